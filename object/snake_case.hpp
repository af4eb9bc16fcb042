#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace ztdecode::object {

// A name of the object protocol as fields and messages are called: "SetProperty" is set_property, "KEY_PRESS"
// key_press.
class SnakeCase {
  public:
    constexpr SnakeCase() = default;
    // Of at most `longest` characters; what is more is left out.
    constexpr explicit SnakeCase(std::string_view name) noexcept {
        char before = '\0';
        for (const char c : name.substr(0, longest)) {
            const bool capital = c >= 'A' && c <= 'Z';
            if (capital && before >= 'a' && before <= 'z') characters_[size_++] = '_';
            characters_[size_++] = capital ? static_cast<char>(c - 'A' + 'a') : c;
            before = c;
        }
    }

    constexpr std::string_view view() const noexcept { return {characters_.data(), size_}; }

  private:
    static constexpr std::size_t longest = 30;

    std::array<char, 2 * longest> characters_{};
    std::size_t size_ = 0;
};

}  // namespace ztdecode::object
