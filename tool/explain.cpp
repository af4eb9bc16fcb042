#include "tool/explain.hpp"

#include <string>

namespace ztdecode::tool {

namespace {

std::string ranges(const std::vector<ByteRange>& bytes) {
    std::string text;
    for (const ByteRange& r : bytes) {
        if (!text.empty()) text += ",";
        text += fmt::format("{}"_cf, r.first);
        if (r.last != r.first) text += fmt::format("-{}"_cf, r.last);
    }
    return text;
}

std::string source_of(const Stretch& stretch) {
    std::string text = ranges(stretch.bytes);
    if (stretch.reassembled && !text.empty()) text = "reassembled " + text;
    if (stretch.behind_the_end) text += text.empty() ? "behind the end" : ", behind the end";
    return text.empty() ? "-" : text;
}

// As a C string literal, so that a stretch stays on its line.
std::string quoted(std::string_view words) {
    std::string text = "\"";
    for (const char c : words) {
        switch (c) {
            case '\n':
                text += "\\n";
                break;
            case '\t':
                text += "\\t";
                break;
            case '\r':
                text += "\\r";
                break;
            case '"':
                text += "\\\"";
                break;
            case '\\':
                text += "\\\\";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
                    text += fmt::format("\\x{:02x}"_cf, static_cast<unsigned char>(c));
                } else {
                    text += c;
                }
        }
    }
    return text + "\"";
}

void entry(std::string_view left, std::string_view right, Text& out) {
    out.print("    {:<12} {}\n"_cf, left, right);
}

}  // namespace

void explain(const Provenance& provenance, std::size_t text_begin, std::size_t text_end, std::uint32_t length,
             Text& out) {
    // Taken out first: the text moves when it grows.
    const std::string text(out.view().substr(text_begin, text_end - text_begin));
    for (const Stretch& s : provenance.stretches()) {
        entry(source_of(s), quoted(std::string_view(text).substr(s.begin, s.end - s.begin)), out);
    }
    const std::string left = ranges(provenance.unused(length));
    entry("unused", left.empty() ? "none" : left, out);
}

}  // namespace ztdecode::tool
