#include "decode/audio_filter.hpp"

#include <array>
#include <cstddef>

#include "core/message.hpp"

namespace ztdecode {

namespace {

// What an audio message from the system starts with.
consteval std::array<bool, 256> audio_opcodes_from_dhs() {
    std::array<bool, 256> audio{};
    for (const int opcode :
         {0x24, 0x25, 0x29, 0x32, 0x3a, 0x3c, 0x3d, 0x3e, 0x3f, 0x40, 0x49, 0x4d, 0x4e, 0x4f}) {
        audio[static_cast<std::size_t>(opcode)] = true;
    }
    return audio;
}
constexpr auto audio_from_dhs = audio_opcodes_from_dhs();
constexpr std::uint8_t audio_to_dhs = 21;

}  // namespace

bool is_audio_opcode(std::uint32_t direction, std::uint8_t type) noexcept {
    return direction != from_dhs ? type == audio_to_dhs : audio_from_dhs[type];
}

}  // namespace ztdecode
