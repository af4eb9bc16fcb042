#include "convert/text.hpp"

namespace ztdecode {

bool bGenericStrCmp(std::string_view pattern, std::string_view text, unsigned limit) noexcept {
    const bool ends_line = !pattern.empty() && pattern.back() == '\n';
    if (limit != 0 && limit < pattern.size()) pattern = pattern.substr(0, limit);
    // The newline takes one character off even where the limit has cut it off before.
    if (ends_line) pattern.remove_suffix(1);
    if (text.size() < pattern.size()) return false;
    for (std::size_t k = 0; k < pattern.size(); ++k) {
        if (pattern[k] != text[k] && pattern[k] != '*' && text[k] != '*') return false;
    }
    return true;
}

}  // namespace ztdecode
