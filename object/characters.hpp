#pragma once

#include <cstdint>

#include "core/text.hpp"

// Names of the characters in UTF-8 values.

namespace ztdecode::object {

// A shared library that knows the names of characters, opened for as long as this lives.
class CharacterNames {
  public:
    // Throws std::bad_alloc when there is no memory to open it.
    explicit CharacterNames(const char* file);
    CharacterNames(const CharacterNames&) = delete;
    CharacterNames& operator=(const CharacterNames&) = delete;
    ~CharacterNames();

    // Null for a character without a name, and for all of them when the library or its function is missing.
    const char* operator[](std::uint32_t code_point) const noexcept {
        return name_ != nullptr ? name_(code_point) : nullptr;
    }
    bool available() const noexcept { return name_ != nullptr; }

  private:
    void* library_ = nullptr;
    const char* (*name_)(unsigned long code_point) = nullptr;
};

// The one that the process uses: opened at the first need and never closed.
const CharacterNames& character_names();

// The name of a character, from the first that has one: the terminals' own characters, the names library, the
// character's block ("Greek Extended-U+1F16"). Else "???".
void print_character_name(std::uint32_t code_point, const CharacterNames& names, Text& out);
void print_character_name(std::uint32_t code_point, Text& out);

// The last resort alone.
void print_block(std::uint32_t code_point, Text& out);

}  // namespace ztdecode::object
