#include "core/decoding.hpp"

namespace ztdecode {

void Decoding::note_between(FieldName field, const Meaning& meaning, const char* begin,
                            const char* end) noexcept {
    const auto from = static_cast<std::size_t>(begin - out_.data());
    const auto to = static_cast<std::size_t>(end - out_.data());
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

void Decoding::hex(FieldName field, std::size_t first, std::size_t n, std::string_view before) {
    const std::size_t begin = out_.size();
    for (std::size_t k = first; k < first + n; ++k) {
        out_.add(before);
        out_.hex((*this)[k].number);
    }
    if (trail_ != nullptr)
        note(field, {Kind::bytes, true, 0, 0, place(first, static_cast<std::uint32_t>(n))}, begin);
}

void Decoding::HEX(FieldName field, std::size_t first, std::size_t n, std::string_view before) {
    const std::size_t begin = out_.size();
    for (std::size_t k = first; k < first + n; ++k) {
        out_.add(before);
        out_.HEX((*this)[k].number);
    }
    if (trail_ != nullptr)
        note(field, {Kind::bytes, true, 0, 0, place(first, static_cast<std::uint32_t>(n))}, begin);
}

}  // namespace ztdecode
