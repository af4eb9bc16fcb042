#pragma once

#include <string_view>

// The page without a trace, as cmake/page.cmake makes it of web/.

namespace ztdecode::tool {

extern const std::string_view page_template;  // with {{policy}}, {{style}}, {{trace}} and {{script}}
extern const std::string_view page_style;
extern const std::string_view page_script;

}  // namespace ztdecode::tool
