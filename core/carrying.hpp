#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/text.hpp"

namespace ztdecode {

// What one captured message carries: super messages and their parts, what a hub passes on, messages put
// together from segments, set emulations, super messages of modules. They carry each other in any mixture,
// and a few bytes can ask for more than any machine has, so there is one budget for all of them. Where it is
// used up nothing more is carried; what was written stays. No message that a system sends comes near it.
struct Carrying {
    static constexpr std::uint32_t most_levels = 2560;  // inside each other; a message has no room for more
    static constexpr std::uint32_t most_reassembled = 64;
    static constexpr std::uint32_t deepest_reassembly = 32;
    static constexpr std::uint32_t deepest_module_super = 12;
    static constexpr std::size_t most_text = std::size_t{16} << 20;
    static constexpr std::size_t most_complaints = std::size_t{64} << 10;
    // Super messages of modules write over each other's text: what is gone takes its time, too.
    static constexpr std::size_t written_over_for_one = 16;
    static constexpr std::size_t text_of_module_part = 16;

    std::uint32_t levels = 0;            // being decoded inside each other
    std::uint32_t reassembly_depth = 0;  // likewise
    // Text: what was written since the captured message began.
    const Text* text = nullptr;
    std::size_t text_begin = 0;
    // What else was used since then. Whoever adds to it says so.
    bool used = false;
    std::uint32_t reassembled = 0;
    std::size_t text_besides = 0;
    std::size_t complaints = 0;  // characters on standard error

    // Nothing is used any more.
    void renew() noexcept;
    void use_text(std::size_t characters) noexcept {
        used = true;
        text_besides += characters;
    }

    std::size_t text_written() const noexcept {
        return text != nullptr && text->size() > text_begin ? text->size() - text_begin : 0;
    }
    std::size_t text_used() const noexcept { return text_besides + text_written(); }
    bool has_room_for(std::size_t characters) const noexcept {
        const std::size_t so_far = text_used();
        return so_far < most_text && characters <= most_text - so_far;
    }
    bool has_room() const noexcept { return has_room_for(0); }

    // Super messages of modules. All of them write to one place, so that an inner one writes over the outer
    // one's text.
    struct ModuleSuper {
        std::uint32_t depth = 0;  // those being walked inside each other
        bool ended = false;       // one ended inside the part that was decoded last
        std::string text{};       // of the inner one that ended last
        std::size_t begin = 0;    // where that text stands
    };
    ModuleSuper module_super{};
    // A set emulation of a module is being decoded, and it turned out to carry another one.
    struct Emulation {
        bool open = false;
        bool inside = false;
    };
    Emulation emulation{};
};

}  // namespace ztdecode
