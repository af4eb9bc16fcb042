#include "core/decoding.hpp"

#include <algorithm>
#include <array>
#include <iterator>

namespace ztdecode {

namespace {

consteval bool every_field_stands_once() {
    std::array<std::string_view, std::size(all_fields)> names;
    std::transform(std::begin(all_fields), std::end(all_fields), names.begin(),
                   [](const Field& field) { return field.name; });
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) == names.end();
}
static_assert(every_field_stands_once());

}  // namespace

void Decoding::note_between(FieldName field, const Meaning& meaning, const char* begin,
                            const char* end) noexcept {
    const auto from = static_cast<std::size_t>(begin - out_.data());
    const auto to = static_cast<std::size_t>(end - out_.data());
    if (!trail_->takes_values()) return trail_->wrote(from, to);
    if (field == row_field) field = row_field_;
    if (field == no_field) {
        trail_->words(message_, meaning.place, from, to);
    } else {
        trail_->value(message_, field.get()->name, field.get(), meaning, from, to);
    }
}

void Decoding::note(FieldName field, const Meaning& meaning, std::size_t begin) noexcept {
    note_between(field, meaning, out_.data() + begin, out_.data() + out_.size());
}

void Decoding::note_text(FieldName field, std::size_t first, std::size_t n, std::size_t begin) noexcept {
    note(field, {Kind::text, true, 0, 0, place(first, static_cast<std::uint32_t>(n))}, begin);
}

void Decoding::text_to_zero(FieldName field, std::size_t first, std::size_t most) {
    const std::size_t begin = out_.size();
    out_.copy_string(message_, first_ + first, most);
    if (trail_ != nullptr) note_text(field, first, out_.size() - begin, begin);
}

// Most bytes are the message's own, which lie in memory.
void Decoding::write_hex(std::size_t first, std::size_t n, bool blanks, const char* digits) {
    const auto own = message_.bytes();
    const std::size_t end = first_ + first + n;
    const std::size_t own_end = std::min(end, own.size());
    std::size_t k = first_ + first;
    char* at = out_.room(3 * n);
    const auto write = [&](std::uint8_t byte) {
        *at = ' ';
        at += blanks ? 1 : 0;
        at[0] = digits[byte >> 4];
        at[1] = digits[byte & 15];
        at += 2;
    };
    for (; k < own_end; ++k) write(own[k]);
    for (; k < end; ++k) write(k < message_capacity ? message_[k] : std::uint8_t{0});
    out_.written_to(at);
}

void Decoding::hex(FieldName field, std::size_t first, std::size_t n, Before before) {
    const std::size_t begin = out_.size();
    write_hex(first, n, before == Before::blank, lower_case_digits);
    if (trail_ != nullptr)
        note(field, {Kind::bytes, true, 0, 0, place(first, static_cast<std::uint32_t>(n))}, begin);
}

void Decoding::HEX(FieldName field, std::size_t first, std::size_t n, Before before) {
    const std::size_t begin = out_.size();
    write_hex(first, n, before == Before::blank, upper_case_digits);
    if (trail_ != nullptr)
        note(field, {Kind::bytes, true, 0, 0, place(first, static_cast<std::uint32_t>(n))}, begin);
}

void Decoding::hex_number(FieldName field, std::size_t first, std::size_t n) {
    const std::size_t begin = out_.size();
    write_hex(first, n, false, lower_case_digits);
    if (trail_ != nullptr) note(field, number_or_bytes(first, n), begin);
}

Meaning Decoding::number_or_bytes(std::size_t first, std::size_t n) const noexcept {
    constexpr std::size_t most_bytes_of_a_number = 7;
    Meaning meaning{Kind::bytes, true, 0, 0, place(first, static_cast<std::uint32_t>(n))};
    if (n == 0 || n > most_bytes_of_a_number) return meaning;
    meaning.kind = Kind::number;
    for (std::size_t k = first; k < first + n; ++k) meaning.number = meaning.number * 256 + (*this)[k].number;
    return meaning;
}

}  // namespace ztdecode
