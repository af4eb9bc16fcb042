#include "tool/redact/tally.hpp"

#include <algorithm>

#include "core/format.hpp"
#include "tool/report/verdicts.hpp"

namespace ztdecode::tool {

namespace {

void pad(std::string_view word, std::size_t width, Text& out) {
    out.add(word);
    for (std::size_t k = word.size(); k < width; ++k) out.add(" ");
}

void pad_front(std::string_view word, std::size_t width, Text& out) {
    for (std::size_t k = word.size(); k < width; ++k) out.add(" ");
    out.add(word);
}

}  // namespace

void Tally::count(Hidden kind, std::string_view link, std::string_view message, std::uint64_t bytes) {
    const std::string_view name = !link.empty() && message.empty() ? "(unknown)" : message;
    Count& count = counts_[{kind, std::string(link), std::string(name)}];
    ++count.times;
    count.bytes += bytes;
}

void Tally::write(Text& out) const {
    out.add("redacted ");
    add_count(messages_, "message", out);
    out.add(" in ");
    add_count(lines_, "line", out);
    out.add("\n");
    if (lost_ > 0) {
        add_count(lost_, "line", out);
        out.add(" blanked whole: no stand-in can be read as what they were\n");
    }
    if (changed_ > 0) {
        add_count(changed_, "message", out);
        out.add(" with something else to say besides\n");
    }
    if (counts_.empty()) {
        out.add("nothing was replaced\n");
        return;
    }
    std::size_t kind_width = 4;
    std::size_t message_width = 7;
    for (const auto& [key, count] : counts_) {
        const auto& [kind, link, message] = key;
        kind_width = std::max(kind_width, name_of(kind).size());
        message_width = std::max(message_width, link.size() + message.size() + 1);
    }
    pad("kind", kind_width + 2, out);
    pad("message", message_width + 2, out);
    out.add("times  bytes\n");
    for (const auto& [key, count] : counts_) {
        const auto& [kind, link, message] = key;
        pad(name_of(kind), kind_width + 2, out);
        std::string name = link.empty() ? "(the line)" : link;
        if (!link.empty()) name.append(" ").append(message);
        pad(name, message_width + 2, out);
        pad_front(std::to_string(count.times), 5, out);
        pad_front(std::to_string(count.bytes), 7, out);
        out.add("\n");
    }
}

}  // namespace ztdecode::tool
