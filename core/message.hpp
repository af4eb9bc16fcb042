#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ztdecode {

// The most bytes that one message holds; byte 5120 and those behind it are 0.
inline constexpr std::uint32_t message_capacity = 5120;

enum Direction : std::uint32_t { from_dhs = 0, to_dhs = 1 };

// What a route decoder says of the message; the HE row of the dispatcher asks for it.
enum class Status : std::uint32_t { none = 0, recognised = 1, unknown = 2 };

enum Route : std::uint32_t {
    route_digital = 0,
    route_he = 1,
    route_visiophone = 2,
    route_type13 = 4,
    route_type14 = 5,
    route_osi = 6,
    route_ibs = 7,
    route_ip = 8,
    route_hub = 9,
    route_cs = 10,
    route_prs = 11,
    route_debug = 12,
};

// One message as the decoders read it: a view on bytes that somebody else keeps.
//
// Byte k is always readable: behind `length` it is the record's byte as it stands (0 in a fresh record, what
// `decale` left behind a shortened message otherwise), and 0 behind the bytes that exist.
//
// A view made by `without_first` reads the bytes behind its end through the message it was made from, which
// must outlive it; that is how dropped leading bytes leave the tail of a record where it was without moving
// anything.
class Message {
  public:
    // A message of `length` bytes, of which `extent` are found at `bytes`: more than `length` where the
    // record's bytes behind the message are to show, fewer where the others are to read as 0. Both are cut to
    // the capacity.
    Message(const std::uint8_t* bytes, std::size_t length, std::size_t extent) noexcept
        : bytes_(bytes),
          length_(within_capacity(length)),
          direct_(within_capacity(std::min(length, extent))),
          covered_(within_capacity(extent)) {}

    // A message in a record of its own: the bytes behind its end are 0.
    explicit Message(std::span<const std::uint8_t> bytes) noexcept
        : Message(bytes.data(), bytes.size(), bytes.size()) {}

    // Bytes that come in no record, however many: the first `length` of them are the message, behind its end
    // stand the others, and then 0.
    static Message without_record(std::span<const std::uint8_t> bytes, std::size_t length) noexcept;
    static Message without_record(std::span<const std::uint8_t> bytes) noexcept {
        return without_record(bytes, bytes.size());
    }

    std::uint8_t operator[](std::size_t k) const noexcept { return k < direct_ ? bytes_[k] : indirect(k); }
    std::uint32_t length() const noexcept { return length_; }

    // Big-endian numbers from byte k on.
    std::uint32_t u16(std::size_t k) const noexcept { return (*this)[k] * 256U + (*this)[k + 1]; }
    std::uint32_t u32(std::size_t k) const noexcept { return u16(k) * 65536U + u16(k + 2); }
    std::int8_t s8(std::size_t k) const noexcept { return static_cast<std::int8_t>((*this)[k]); }
    bool bit(std::size_t k, unsigned n) const noexcept { return ((*this)[k] >> n & 1) != 0; }

    // The message without its first n bytes, n <= length(). *this must outlive the result.
    Message without_first(std::uint32_t n) const noexcept;
    // The same bytes under another length; bytes that this brings into the message are those that stood
    // behind it. *this must outlive the result.
    Message with_length(std::uint32_t n) const noexcept;
    // A message in a record that others used before, which is this one, of no length: the bytes behind the
    // first `written` ones and the message are theirs. Afterwards the record knows whether one of those was
    // looked at.
    Message in_used_record(std::uint32_t length, std::uint32_t written) const noexcept;
    bool was_looked_at() const noexcept { return looked_at_; }
    // Bytes first ... first+n-1, all below length(), as a message in a fresh record.
    // *this must outlive the result where those bytes came in by a longer length.
    Message part(std::uint32_t first, std::uint32_t n) const noexcept;

    // The bytes of the message that lie in memory one behind the other: all, but for those that have to be 0
    // because there are none.
    std::span<const std::uint8_t> bytes() const noexcept {
        return {bytes_, length_ < covered_ ? length_ : covered_};
    }

    // Where byte 0 stands in the message as it was captured, or in the one that was put together from
    // segments.
    std::uint32_t origin() const noexcept { return origin_; }

    std::uint32_t direction = from_dhs;

  private:
    static std::uint32_t within_capacity(std::size_t n) noexcept {
        return static_cast<std::uint32_t>(std::min<std::size_t>(n, message_capacity));
    }
    [[gnu::cold]] std::uint8_t indirect(std::size_t k) const noexcept;

    const std::uint8_t* bytes_;
    std::uint32_t length_;
    std::uint32_t direct_;             // bytes below this need no second look
    std::uint32_t covered_;            // bytes that are found at bytes_; the others are found through before_
    std::uint32_t shift_ = 0;          // byte k of this message is byte k + shift_ of before_
    std::uint32_t origin_ = 0;         // offset of byte 0 in the message as it was captured
    const Message* before_ = nullptr;  // what this one was cut from
    bool fresh_ = false;               // behind length_ stands nothing of before_
    bool in_used_record_ = false;      // before_ is that record
    mutable bool looked_at_ = false;   // for another message, or behind the end
};

}  // namespace ztdecode
