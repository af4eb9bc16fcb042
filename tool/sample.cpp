#include "tool/sample.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "decode/trace_lines.hpp"
#include "tool/output/control.hpp"

namespace ztdecode::tool {

namespace {

struct Way {
    std::string_view option;
    std::optional<LineLayout> layout;
    MissingBytes missing;
};
// The best of them first, of those that read as many lines.
constexpr auto ways = std::to_array<Way>({
    {"--layout auto", std::nullopt, MissingBytes::refused},
    {"--layout line", LineLayout::line, MissingBytes::refused},
    {"--layout lng2", LineLayout::line_lng2, MissingBytes::refused},
    {"--pad", std::nullopt, MissingBytes::padded},
});

bool reads(const Way& way, const std::string& text, std::size_t from = 0) {
    TraceReader reader(way.layout, from_dhs, way.missing);
    const Line line{text.c_str() + from, text.size() - from};
    if (reader.begin(line, 1) != LineVerdict::trace_line) return false;
    bool any = false;
    while (reader.next()) any = true;
    return any && !reader.refusal();
}

// Behind its first words it is a trace line.
bool has_prefix(const std::string& line) {
    std::size_t words = 32;  // each of them is a look at the rest of the line
    for (std::size_t at = line.find(' '); at != std::string::npos && words > 0;
         at = line.find(' ', at + 1), --words) {
        if (reads(ways.front(), line, at + 1)) return true;
    }
    return false;
}

bool is_binary(const std::string& line) {
    return std::any_of(line.begin(), line.end(), [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 0x20 && c != '\t' && c != '\r';
    });
}

std::string_view option_for(const std::vector<std::string>& lines) {
    const auto count = [&](auto holds) { return std::count_if(lines.begin(), lines.end(), holds); };
    const auto half = static_cast<std::ptrdiff_t>((lines.size() + 1) / 2);
    for (const Way& way : ways) {
        if (count([&](const std::string& line) { return reads(way, line); }) >= half) return way.option;
    }
    if (count(has_prefix) >= half)
        return "--prefix, with a pattern for what stands in front of the messages,";
    if (count(is_binary) > 0) return "--layout bin1 or bin2, if this is a binary trace,";
    return {};
}

}  // namespace

void Sample::add(Line line) {
    constexpr std::size_t longest = 4096;
    lines_.emplace_back(line.text, std::min(line.length, longest));
}

void Sample::add(const Sample& behind) {
    for (const std::string& line : behind.lines_) {
        if (wants_more()) lines_.push_back(line);
    }
}

bool Sample::describe(Text& out) const {
    constexpr std::size_t shown = 60;
    const std::string_view first = lines_.front();
    const std::string_view option = option_for(lines_);
    out.add("not one line was decoded; they look like ");
    add_quoted(first.substr(0, shown), out);
    if (option.empty()) {
        out.add(", which is no layout of trace lines");
    } else {
        out.print(": {-} would read them"_cf, option);
    }
    return !option.empty();
}

}  // namespace ztdecode::tool
