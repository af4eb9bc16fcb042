#include "tool/select/regex.hpp"

namespace ztdecode::tool {

std::unique_ptr<const re2::RE2> compile_regex(std::string_view words, std::string& why) {
    constexpr std::string_view flags = "(?m)";
    constexpr std::size_t longest = std::size_t{64} << 10;
    if (words.size() > longest) {
        why = "the regular expression is longer than 64 KiB";
        return nullptr;
    }
    re2::RE2::Options options;
    options.set_log_errors(false);
    auto regex = std::make_unique<const re2::RE2>(std::string(flags) + std::string(words), options);
    if (regex->ok()) return regex;
    why = regex->error();
    if (const std::size_t own = why.find(flags); own != std::string::npos) why.erase(own, flags.size());
    return nullptr;
}

}  // namespace ztdecode::tool
