#include "tool/redact/kinds.hpp"

#include <algorithm>

namespace ztdecode::tool {

namespace {

constexpr std::array<std::string_view, hidden_kinds> names = {
    "number",    "person",  "address", "hardware_address", "secret", "unknown", "unread",
    "left_over", "refused", "line",    "comment",          "prefix"};

}  // namespace

std::string_view name_of(Hidden kind) noexcept { return names[static_cast<std::size_t>(kind)]; }

std::optional<Hidden> kind_of(Sensitivity sensitivity) noexcept {
    switch (sensitivity) {
        case Sensitivity::none:
            return std::nullopt;
        case Sensitivity::call_number:
            return Hidden::number;
        case Sensitivity::person:
            return Hidden::person;
        case Sensitivity::network_address:
            return Hidden::address;
        case Sensitivity::hardware_address:
            return Hidden::hardware_address;
        case Sensitivity::secret:
            break;
    }
    return Hidden::secret;
}

// What stands behind a backslash, names of groups, numbers of times and sets of characters are no words.
void Kept::keep_words_of(std::string_view pattern) {
    const auto in_word = [](char c) {
        return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
    };
    for (std::size_t at = 0; at < pattern.size();) {
        if (pattern[at] == '\\') {
            at += 2;
        } else if (pattern[at] == '{' || pattern[at] == '[') {
            at = std::min(pattern.find(pattern[at] == '{' ? '}' : ']', at), pattern.size() - 1) + 1;
        } else if (pattern.substr(at).starts_with("(?")) {
            at = std::min(pattern.find_first_of(">:)", at), pattern.size() - 1) + 1;
        } else if (in_word(pattern[at])) {
            const std::size_t begin = at;
            while (at < pattern.size() && in_word(pattern[at])) ++at;
            words_.emplace(pattern.substr(begin, at - begin));
        } else {
            ++at;
        }
    }
}

bool Kept::keep(std::string_view name, std::string& why) {
    const auto* const found = std::find(names.begin(), names.end(), name);
    const auto never = [](std::string_view one) {
        return one == name_of(Hidden::secret) || one == name_of(Hidden::unread);
    };
    if (name == name_of(Hidden::secret)) {
        why = "a secret is never kept";
    } else if (name == name_of(Hidden::unread)) {
        why = "bytes that no text speaks of may be keys, and are never kept";
    } else if (found == names.end()) {
        why.assign(name).append(" is none of ");
        for (const std::string_view one : names) {
            if (never(one)) continue;
            why.append(one == names.front() ? "" : ", ").append(one);
        }
    } else {
        kept_[static_cast<std::size_t>(found - names.begin())] = true;
    }
    return why.empty();
}

}  // namespace ztdecode::tool
