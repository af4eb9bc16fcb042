#include "digital/options/module.hpp"

namespace ztdecode::modules {

void illegal_command(Decoding& d) { d.print("illegal command {command:02x}"_cf, d[4]); }

}  // namespace ztdecode::modules
