#include "tool/report/explained.hpp"

#include <algorithm>
#include <string>

#include "tool/output/control.hpp"

namespace ztdecode::tool {

namespace {

constexpr std::string_view left_out = "..";
constexpr std::string_view unused_bytes = "unused";

// How many of n items stand before and behind those that are left out.
struct Shown {
    std::size_t first;
    std::size_t last;
};
constexpr Shown shown_ranges(std::size_t n) { return n <= 4 ? Shown{n, 0} : Shown{2, 1}; }
constexpr Shown shown_bytes(std::size_t n) { return n <= 8 ? Shown{n, 0} : Shown{5, 2}; }

std::string range(ByteRange r) {
    return r.first == r.last ? formatted("{-}"_cf, r.first) : formatted("{-}-{-}"_cf, r.first, r.last);
}

std::string offsets(std::span<const ByteRange> ranges) {
    const Shown shown = shown_ranges(ranges.size());
    std::string text;
    for (std::size_t k = 0; k < ranges.size(); ++k) {
        if (k == shown.first) text.append(",").append(left_out);
        if (k >= shown.first && k < ranges.size() - shown.last) continue;
        if (k > 0) text += ",";
        text += range(ranges[k]);
    }
    return text;
}

std::size_t size(ByteRange r) { return std::size_t{r.last} - r.first + 1; }

std::string hexadecimal(std::span<const ByteRange> ranges, std::span<const std::uint8_t> bytes) {
    std::size_t n = 0;
    for (const ByteRange& r : ranges) n += size(r);
    const Shown shown = shown_bytes(n);
    std::string text;
    std::size_t k = 0;  // of the byte among the n
    for (const ByteRange& r : ranges) {
        for (std::uint32_t offset = r.first; offset <= r.last && offset < bytes.size(); ++offset, ++k) {
            if (k == shown.first) text.append(" ").append(left_out);
            if (k >= shown.first && k < n - shown.last) continue;
            text += formatted("{-}{-:02x}"_cf, k > 0 ? " " : "", bytes[offset]);
        }
    }
    return text;
}

// The columns before the words.
struct Source {
    std::string offsets;
    std::string bytes;
};

// The bytes of a reassembled message are those of its segments; they stand nowhere in this one.
Source source_of(const Stretch& stretch, const Trail& trail, const Message& m) {
    const auto bytes = trail.bytes_of(stretch);
    Source source = {offsets(bytes), {}};
    if (trail.messages()[stretch.message].reassembled && !bytes.empty()) {
        source.offsets.insert(0, "reassembled ");
    } else {
        source.bytes = hexadecimal(bytes, m.bytes());
    }
    if (stretch.missing) source.offsets += source.offsets.empty() ? "behind the end" : ", behind the end";
    if (source.offsets.empty()) source.offsets = "-";
    return source;
}

void add_column(std::string_view words, std::size_t width, Text& out) {
    out.add(words);
    for (std::size_t k = words.size(); k < width + 2; ++k) out.add(" ");
}

}  // namespace

void explain(const Trail& trail, std::string_view text, const Message& m, Text& out) {
    std::size_t width = unused_bytes.size();
    std::size_t bytes_width = 0;
    for (const Stretch& s : trail.stretches()) {
        const Source source = source_of(s, trail, m);
        width = std::max(width, source.offsets.size());
        bytes_width = std::max(bytes_width, source.bytes.size());
    }
    for (const Stretch& s : trail.stretches()) {
        const Source source = source_of(s, trail, m);
        out.add("    ");
        add_column(source.offsets, width, out);
        add_column(source.bytes, bytes_width, out);
        add_quoted(text.substr(s.begin, s.end - s.begin), out);
        out.add("\n");
    }
    const auto left = trail.unused();
    out.add("    ");
    add_column(unused_bytes, width, out);
    if (left.empty()) {
        out.add("none\n");
    } else {
        out.print("{-}  {-}\n"_cf, offsets(left), hexadecimal(left, m.bytes()));
    }
}

}  // namespace ztdecode::tool
