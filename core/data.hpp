#pragma once

#include <cstddef>
#include <string_view>

#include "core/fields.hpp"
#include "core/record.hpp"
#include "core/values.hpp"

// What records say, as data: the names and forms that it has in every output.

namespace ztdecode::data {

// Constants, with a zero behind them.
std::string_view name_of(Kind kind) noexcept;
std::string_view name_of(Sensitivity sensitivity) noexcept;
std::string_view name_of(Decoded decoded) noexcept;

// A value by itself: a number in decimal, a flag as true or false, bytes as their digits, a word without the
// punctuation that its text puts around it. `shown` is how it stands in the text. What is not there already
// is written to `room`, which has `room_for_value` characters.
std::size_t room_for_value(const Meaning& meaning, std::string_view shown) noexcept;
std::string_view value(const Meaning& meaning, std::string_view shown, char* room) noexcept;

}  // namespace ztdecode::data
