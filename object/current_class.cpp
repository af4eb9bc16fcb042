#include "object/current_class.hpp"

namespace ztdecode::object {

ObjectClass current_class(Decoding& d, const Byte& opcode) {
    const ObjectClass found = class_of(opcode.number);
    d.session().set_anew(d.session().object.properties) = found.properties.rows();
    if (!found.properties) {
        d.print("\n{class}"_cf, Word{"Error class lookup table ptr", opcode.number, false, opcode.place});
        throw UnknownClass{};
    }
    return found;
}

}  // namespace ztdecode::object
