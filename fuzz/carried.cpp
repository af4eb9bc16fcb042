#include "fuzz/carried.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace ztdecode::fuzz {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t super_type1 = 0x0B;  // of modules as well
constexpr std::uint8_t super_type2 = 0x17;
constexpr std::uint8_t segment = 0x0C;
constexpr std::uint8_t first_segment = 0x80;
constexpr std::uint8_t hub = 0x14;
constexpr std::uint8_t module_command = 0x02;  // from the system
constexpr std::uint8_t module_message = 0x04;  // to it
constexpr std::uint8_t set_emulation = 0x26;
constexpr std::uint8_t computer_link = 2 << 3;  // a module's type, in front of its address

constexpr unsigned deepest = 8;  // of what is chosen level by level; what repeats goes as deep as bytes allow
constexpr std::size_t most_messages = 24;

// One of them for each module whose messages may be super messages.
constexpr std::array<std::uint8_t, 8> module_types = {2, 5, 4, 9, 3, 10, 2, 2};

std::uint8_t low(std::size_t n) { return static_cast<std::uint8_t>(n & 0xFF); }
std::uint8_t high(std::size_t n) { return static_cast<std::uint8_t>(n >> 8 & 0xFF); }

void append(Bytes& to, const Bytes& from) { to.insert(to.end(), from.begin(), from.end()); }

Bytes behind(Bytes front, const Bytes& message) {
    append(front, message);
    return front;
}

class Generator {
  public:
    explicit Generator(std::span<const std::uint8_t> steering) : steering_(steering) {}

    std::vector<CapturedMessage> trace() {
        switches_ = {.color = one_of(4) == 1, .audio_only = one_of(16) == 1, .debug = one_of(4) == 1};
        if (one_of(4) != 3) remember_modules();
        do {
            direction_ = one_of(3) == 2 ? to_dhs : from_dhs;
            capture(message(1 + one_of(deepest)));
        } while (at_ < steering_.size() && trace_.size() < most_messages);
        return std::move(trace_);
    }

  private:
    // Behind the end of the steering bytes always the first of the choices.
    unsigned one_of(unsigned choices) { return at_ < steering_.size() ? steering_[at_++] % choices : 0; }

    void capture(Bytes message) {
        if (message.size() > message_capacity) message.resize(message_capacity);
        trace_.push_back({switches_, direction_, std::move(message)});
    }

    void remember_modules() {
        direction_ = to_dhs;
        for (std::uint8_t address = 0; address < module_types.size(); ++address) {
            capture({module_message, static_cast<std::uint8_t>(module_types[address] << 3 | address), 0});
        }
    }

    // A length as the message tells it.
    std::size_t told(std::size_t length) {
        switch (one_of(24)) {
            case 21:
                return length + one_of(8) - std::min<std::size_t>(length, 4);
            case 22:
                return 0;
            case 23:
                return 255;
            default:
                return length;
        }
    }

    Bytes message(unsigned depth) {
        if (depth == 0) return single();
        switch (one_of(11)) {
            case 1:
                return super_of(super_type1, depth);
            case 2:
                return super_of(super_type2, depth);
            case 3:
                return hub_of(message(depth - 1));
            case 4:
                return module_super(depth);
            case 5:
                return direction_ == to_dhs ? emulation_of(message(depth - 1)) : segments(depth);
            case 6:
                return segments(depth);
            case 7:
                return repeated(depth);
            case 8:
                return last_segments();
            case 9:
            case 10:
                return direction_ == to_dhs ? module_super(depth) : super_of(super_type1, depth);
            default:
                return single();
        }
    }

    // Messages that carry nothing, but that another one may end with them.
    Bytes single() {
        switch (one_of(6)) {
            case 1:
                return {0x0C, 0x00};
            case 2:
                return {0x21, 0x04, 0x03};
            case 3:
                return any_bytes(one_of(32));
            case 4:
                return filled();
            case 5:
                return object_message();
            default:
                return {0x2A};
        }
    }

    Bytes any_bytes(std::size_t n) {
        Bytes bytes(n);
        for (std::uint8_t& byte : bytes) byte = low(one_of(256));
        return bytes;
    }

    // Long ones: many empty parts, for some of them.
    Bytes filled() {
        constexpr std::array<std::uint8_t, 6> types = {super_type1, super_type2, 0x13, 0x16, 0x05, segment};
        Bytes bytes = {types[one_of(types.size())]};
        const std::size_t length = bytes.size() + std::size_t{21} * one_of(256);
        bytes.resize(length, low(one_of(256)));
        return bytes;
    }

    // A property that claims more than there is, and one of a class that does not exist.
    Bytes object_message() {
        if (one_of(4) == 3) return {0x16, 0x02, 0xFE};
        return {0x16, 0x02, 0x84, 0x00, 0x07, 0x37, 0xFF, high(told(0xFF00)), 0x41};
    }

    Bytes super_of(std::uint8_t type, unsigned depth) {
        Bytes whole = {type};
        for (unsigned parts = 1 + one_of(6); parts > 0; --parts) add_part(whole, message(depth - 1));
        return whole;
    }

    void add_part(Bytes& whole, Bytes part) {
        const bool wide = whole[0] == super_type2;
        if (!wide && part.size() > 255) part.resize(255);
        const std::size_t length = told(part.size());
        whole.push_back(low(length));
        if (wide) whole.push_back(high(length));
        append(whole, part);
    }

    Bytes hub_of(const Bytes& message) {
        return behind({hub, static_cast<std::uint8_t>(0x10 + one_of(3))}, message);
    }

    Bytes emulation_of(const Bytes& message) {
        return behind({module_message, computer_link, set_emulation}, message);
    }

    Bytes module_super(unsigned depth) {
        const std::uint8_t address = low(one_of(8));
        const Bytes front = direction_ == to_dhs
                                ? Bytes{module_message, static_cast<std::uint8_t>(computer_link | address)}
                                : Bytes{module_command, address};
        return behind(front, module_parts(depth));
    }

    Bytes module_parts(unsigned depth) {
        Bytes whole = {super_type1};
        for (unsigned parts = 1 + one_of(8); parts > 0; --parts) add_part(whole, module_part(depth));
        return whole;
    }

    Bytes module_part(unsigned depth) {
        switch (depth == 0 ? 0 : one_of(5)) {
            case 1:
                return module_parts(depth - 1);
            case 2:
                return behind({set_emulation}, message(depth - 1));
            case 3:
                return any_bytes(one_of(16));
            case 4: {
                const unsigned length = one_of(256);
                return Bytes(length, low(one_of(16)));
            }
            default:
                return {0x0E};
        }
    }

    // A message in segments: those before the last one are captured, or all of them are in one super message.
    Bytes segments(unsigned depth) {
        const Bytes whole = message(depth - 1);
        const unsigned count = 1 + one_of(4);
        const std::size_t size = (whole.size() + count - 1) / count;
        const bool apart = one_of(2) == 1;
        std::size_t length = told(whole.size());
        if (one_of(8) == 7) length += message_capacity;
        Bytes super = {super_type2};
        for (unsigned k = 0; k < count; ++k) {
            const auto to_come = static_cast<std::uint8_t>(count - 1 - k);
            Bytes one = {segment, to_come};
            if (k == 0)
                one = {segment, static_cast<std::uint8_t>(first_segment | to_come), high(length),
                       low(length)};
            const std::size_t begin = std::min(k * size, whole.size());
            const std::size_t end = std::min(begin + size, whole.size());
            one.insert(one.end(), whole.begin() + static_cast<std::ptrdiff_t>(begin),
                       whole.begin() + static_cast<std::ptrdiff_t>(end));
            if (!apart) {
                add_part(super, one);
            } else if (to_come == 0) {
                return one;
            } else {
                capture(one);
            }
        }
        return super;
    }

    // Last segments that add nothing: each of them decodes what is gathered once more.
    Bytes last_segments() {
        Bytes whole = {super_type1};
        for (unsigned parts = 1 + one_of(16); parts > 0; --parts) add_part(whole, {segment, 0});
        return whole;
    }

    // One way of carrying over and over again, until the count or the room is used up.
    Bytes repeated(unsigned depth) {
        Bytes inner = message(depth - 1);
        const unsigned way = one_of(6);
        const std::size_t root = one_of(52);
        const std::size_t count = root * root;  // seldom as many as there is room for
        for (std::size_t k = 0; k < count && inner.size() + 3 < message_capacity; ++k)
            inner = carried(way, inner);
        return inner;
    }

    Bytes carried(unsigned way, const Bytes& inner) {
        const std::size_t length = inner.size();
        switch (way) {
            case 1:
                return behind({super_type2, low(length), high(length)}, inner);
            case 2:
                return behind({module_message, computer_link, set_emulation}, inner);
            case 3:
                return behind({super_type2, low(length + 2), high(length + 2), hub, 0x11}, inner);
            case 4:
                return behind({segment, first_segment, high(length), low(length)}, inner);
            case 5:
                return behind({super_type1, low(length)}, inner);
            default:
                return behind({hub, 0x10}, inner);
        }
    }

    std::span<const std::uint8_t> steering_;
    std::size_t at_ = 0;
    Switches switches_;
    std::uint32_t direction_ = from_dhs;
    std::vector<CapturedMessage> trace_;
};

}  // namespace

std::vector<CapturedMessage> carried_trace(std::span<const std::uint8_t> steering) {
    return Generator(steering).trace();
}

}  // namespace ztdecode::fuzz
