#include "digital/options/module.hpp"

namespace ztdecode {

void illegal_command(Session& /*session*/, const Message& m, Text& out) {
    out.print("illegal command {:02x}"_cf, m[4]);
}

}  // namespace ztdecode
