#pragma once

#include <memory>
#include <string_view>

#include "tool/analysis/findings.hpp"
#include "tool/report/remarks.hpp"

namespace ztdecode::tool {

// What the rules find in a trace, beneath its messages.
std::unique_ptr<Remarks> finding_remarks(std::string_view file, const Findings::Reading& reading);

}  // namespace ztdecode::tool
