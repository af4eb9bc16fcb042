#include "object/characters.hpp"

#include <dlfcn.h>

#include <cerrno>
#include <cstddef>
#include <new>

#include "object/unicode.hpp"

namespace ztdecode::object {

CharacterNames::CharacterNames(const char* file) {
#ifndef __EMSCRIPTEN__  // There is nothing to open.
    errno = 0;
    library_ = dlopen(file, RTLD_LAZY);
    if (library_ == nullptr && errno == ENOMEM) throw std::bad_alloc();
    if (library_ != nullptr) name_ = reinterpret_cast<decltype(name_)>(dlsym(library_, "uniNamesList_name"));
#else
    static_cast<void>(file);
#endif
}

CharacterNames::~CharacterNames() {
    if (library_ != nullptr) dlclose(library_);
}

const CharacterNames& character_names() {
    // Never destroyed: a host may ask from its own exit handlers.
    alignas(CharacterNames) static std::byte storage[sizeof(CharacterNames)];
    static const CharacterNames& names =
        *::new (static_cast<void*>(storage)) CharacterNames("libuninameslist.so");
    return names;
}

void print_block(std::uint32_t code_point, Text& out) {
    const char* block = block_name(code_point);
    if (block == nullptr) {
        out.add("???");
        return;
    }
    out.print("{-}-U+{-:04X}"_cf, std::string_view(block), code_point);
}

void print_character_name(std::uint32_t code_point, const CharacterNames& names, Text& out) {
    if (const char* glyph = glyph_name(code_point)) {
        out.add(glyph);
    } else if (const char* name = names[code_point]) {
        out.add(name);
    } else {
        print_block(code_point, out);
    }
}

void print_character_name(std::uint32_t code_point, Text& out) {
    // The terminals' own characters do not need the library.
    if (const char* glyph = glyph_name(code_point)) {
        out.add(glyph);
    } else {
        print_character_name(code_point, character_names(), out);
    }
}

}  // namespace ztdecode::object
