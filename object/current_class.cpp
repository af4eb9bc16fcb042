#include "object/current_class.hpp"

namespace ztdecode {

ObjectClass current_class(Session& session, std::uint8_t opcode, Text& out) {
    const ObjectClass found = class_of(opcode);
    session.change(session.object.properties) = found.properties.rows();
    if (!found.properties) {
        out.add("\nError class lookup table ptr");
        throw UnknownClass{};
    }
    return found;
}

}  // namespace ztdecode
