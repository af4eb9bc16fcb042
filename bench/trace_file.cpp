#include "bench/trace_file.hpp"

#include <array>

namespace ztdecode::bench {

namespace {

constexpr std::uint64_t seed = 7301;

// The reader of the S/R layout takes a line of 30 bytes or more to have two length bytes, that of tagged
// lines one of 255 or more.
constexpr auto layouts = std::to_array<TraceLayout>({
    {"spzt", false, Head::column, Width::shortest, 30},
    {"spzt-lng2", false, Head::column, Width::two, 0},
    {"zt", false, Head::tag, Width::shortest, 255},
    {"zt-lng2", false, Head::tag, Width::two, 0},
    {"line", false, Head::none, Width::one, 0},
    {"lng2", false, Head::none, Width::two, 0},
    {"bin1", true, Head::none, Width::one, 0},
    {"bin2", true, Head::none, Width::two, 0},
});

}  // namespace

const TraceLayout* layout_named(std::string_view name) {
    for (const TraceLayout& layout : layouts) {
        if (layout.name == name) return &layout;
    }
    return nullptr;
}

TraceFile::TraceFile(const TraceLayout& layout, std::uint32_t direction)
    : layout_(layout), direction_(direction), office_(seed) {}

Captured TraceFile::next_fitting() {
    for (;;) {
        Captured captured = office_.next();
        const bool fits = layout_.width != Width::one || captured.bytes.size() <= 255;
        if (fits && (layout_.head == Head::column || captured.direction == direction_)) return captured;
    }
}

// A first byte of 00 would be taken for the high length byte of a tagged line.
bool TraceFile::has_two_length_bytes(const Bytes& message) const {
    if (layout_.width != Width::shortest) return layout_.width == Width::two;
    return message.size() >= layout_.two_bytes_from || message[0] == 0;
}

void TraceFile::write(Text& out) {
    const Captured captured = next_fitting();
    const Bytes& message = captured.bytes;
    const auto low = static_cast<std::uint8_t>(message.size());
    const auto high = static_cast<std::uint8_t>(message.size() >> 8);
    const bool two = has_two_length_bytes(message);
    if (layout_.binary) {
        out.put(low);
        if (two) out.put(high);
        for (const std::uint8_t byte : message) out.put(byte);
        return;
    }
    if (layout_.head == Head::tag) out.add("zt ");
    if (layout_.head == Head::column) {
        out.print("{:06}{} "_cf, number_ % 1000000, captured.direction == to_dhs ? "R" : "S");
    }
    out.hex(low);
    if (two) out.print(" {:02x}"_cf, high);
    for (const std::uint8_t byte : message) out.print(" {:02x}"_cf, byte);
    out.add("\n");
    ++number_;
}

}  // namespace ztdecode::bench
