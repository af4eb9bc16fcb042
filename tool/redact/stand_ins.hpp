#pragma once

#include <nettle/hmac.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace ztdecode::tool {

// What stands in the place of a value that is hidden: made of the value and a key, so that the same value has
// the same stand-in wherever it stands, and nobody without the key can go back. A stand-in has the length of
// its value, and of each character the class: a digit for a digit, a capital for a capital, as many bytes of
// UTF-8, a control code for a control code. Blanks, signs and the ends of lines stay.
//
// Digits are replaced from left to right, each by the digits in front of it: so a number that is dialled key
// by key becomes the same number as one that comes whole, and numbers that begin alike still do. So do
// addresses, byte by byte. Words are replaced as a whole.
//
// `attempt` asks for another stand-in where the first one will not do.
class StandIns {
  public:
    using Bytes = std::span<std::uint8_t>;

    explicit StandIns(std::span<const std::uint8_t> key) noexcept;

    // Characters in UTF-8 or another code of one byte a character, or in UTF-16: letters, digits, addresses
    // with dots in them.
    void text(Bytes characters, unsigned attempt) const;
    // One of several characters that come one by one, or the code of a digit (0-9), behind these.
    void typed(std::uint8_t& character, std::string_view before, unsigned attempt) const;
    // Two digits in each byte; a half byte that is none stays.
    void half_bytes(Bytes digits, unsigned attempt) const;
    // Four bytes or sixteen. A subnet mask tells nothing about anybody and stays, the address 0.0.0.0 too.
    void address(Bytes address, unsigned attempt) const;
    // Anything else. Nothing but zeros, or nothing but ones, stays: it is not set.
    void bytes(Bytes bytes, unsigned attempt) const;
    // Without a key: the same for all values of that form.
    static void blank_text(Bytes characters, unsigned attempt);
    static void blank(Bytes bytes, unsigned attempt);

  private:
    class Stream;

    void text_of_bytes(Bytes text, unsigned attempt) const;
    std::uint8_t in_cycle(std::string_view label, std::string_view before, unsigned attempt,
                          std::uint32_t index, std::uint32_t count) const;
    void digits(std::span<std::uint8_t> digits, unsigned attempt) const;
    void octets(std::span<std::uint8_t> octets, unsigned attempt) const;
    void mix(std::span<std::uint32_t> indexes, std::span<const std::uint32_t> counts, unsigned attempt) const;
    void mix_once(std::span<std::uint32_t> indexes, std::span<const std::uint32_t> counts,
                  unsigned attempt) const;

    hmac_sha256_ctx keyed_;
};

// Whether all of these can be shown as characters.
bool all_printable(std::span<const std::uint8_t> bytes) noexcept;
// Whether all of these are letters or digits, and so may well be a text.
bool all_letters(std::span<const std::uint8_t> bytes) noexcept;

}  // namespace ztdecode::tool
