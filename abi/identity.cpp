#include "decode/tables/identity.hpp"

#include "abi/process.hpp"
#include "decode/audio_filter.hpp"
#include "digital/audio.hpp"

using namespace ztdecode::abi;
using ztdecode::Message;
using ztdecode::Number;
using ztdecode::Session;
using ztdecode::Text;
using ztdecode::operator""_cf;

extern "C" {

const char* type_poste(std::uint32_t code) { return ztdecode::terminal_type(Number{code}).text.data(); }

const char* design_poste(int value) { return ztdecode::terminal_design(Number{static_cast<std::uint32_t>(value)}).text.data(); }

const char* ring_cadence(std::uint32_t code) { return ztdecode::ring_cadence(Number{code}).text.data(); }

const char* version_logiciel(const char* label, std::uint32_t major, std::uint32_t minor) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) {
        out.print(" {-}={-}"_cf, label == nullptr ? "" : label, ztdecode::Version{major, minor});
    });
}

const char* dec_err(std::uint32_t code) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) { out.add(ztdecode::error(Number{code})); });
}

const char* dec_selftest(int bits) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session& s, Text& out) {
        const Message nothing({});
        ztdecode::Decoding d(s, nothing, out);
        ztdecode::self_test(d, Number{static_cast<std::uint32_t>(bits)});
    });
}

const char* dec_warn(std::uint32_t code) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) { out.add(ztdecode::warning(Number{code})); });
}

const char* audio_config(MessageRecord record) {
    static KeptText buffer;
    return decoded_in_own_buffer(buffer, &record, ztdecode::digital::audio_configuration);
}

int inListAudioOpcodes(int direction, std::uint8_t type) {
    return ztdecode::may_be_shown(session(), static_cast<std::uint32_t>(direction), type) ? 1 : 0;
}

const char* download(MessageRecord /*record*/) { return "download"; }

}  // extern "C"
