#include "decode/tables/identity.hpp"

#include "abi/process.hpp"
#include "decode/audio_filter.hpp"
#include "digital/audio.hpp"
#include "he/he.hpp"

using namespace ztdecode;
using namespace ztdecode::abi;

namespace {

// The block of an application's name is always this large; the longest name has 24 characters.
constexpr std::size_t name_block = 30;

}  // namespace

extern "C" {

const char* type_poste(std::uint32_t code) { return terminal_type(Number{code}).text.data(); }

const char* design_poste(int value) {
    return terminal_design(Number{static_cast<std::uint32_t>(value)}).text.data();
}

const char* ring_cadence(std::uint32_t code) { return ztdecode::ring_cadence(Number{code}).text.data(); }

const char* version_logiciel(const char* label, std::uint32_t major, std::uint32_t minor) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) {
        out.print(" {-}={-}"_cf, label == nullptr ? "" : label, ztdecode::Version{major, minor});
    });
}

const char* dec_err(std::uint32_t code) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) { out.add(error(Number{code})); });
}

const char* dec_selftest(int bits) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session& s, Text& out) {
        const Message nothing({});
        Decoding d(s, nothing, out);
        self_test(d, Number{static_cast<std::uint32_t>(bits)});
    });
}

const char* dec_warn(std::uint32_t code) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) { out.add(warning(Number{code})); });
}

const char* audio_config(MessageRecord record) {
    return decoded_in_own_buffer<digital::audio_configuration>(&record);
}

int inListAudioOpcodes(int direction, std::uint8_t type) {
    return may_be_shown(session(), static_cast<std::uint32_t>(direction), type) ? 1 : 0;
}

// Numbers that no byte holds are shown as the hexadecimal number that they are.
char* apId(int id) {
    auto* block = static_cast<char*>(std::malloc(name_block));  // NOLINT: the host frees it
    if (block == nullptr) return heap_copy("memory exhausted: will crash on freeing this.\n");
    *he::application({static_cast<std::uint32_t>(id)}).write(block) = '\0';
    return block;
}

const char* download(MessageRecord /*record*/) { return "download"; }

}  // extern "C"
