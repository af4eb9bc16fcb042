#include "decode/identity.hpp"

#include "abi/process.hpp"

using namespace ztdecode::abi;
using ztdecode::Message;
using ztdecode::Session;
using ztdecode::Text;

extern "C" {

const char* type_poste(std::uint32_t code) { return ztdecode::type_poste(code).data(); }

const char* design_poste(int value) { return ztdecode::design_poste(value).data(); }

const char* ring_cadence(std::uint32_t code) { return ztdecode::ring_cadence(code).data(); }

const char* version_logiciel(const char* label, std::uint32_t major, std::uint32_t minor) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) {
        out.add(ztdecode::version_logiciel(label == nullptr ? "" : label, major, minor));
    });
}

const char* dec_err(std::uint32_t code) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) { out.add(ztdecode::dec_err(code)); });
}

const char* dec_selftest(int bits) {
    static KeptText buffer;
    return in_own_buffer(
        buffer, [&](Session&, Text& out) { ztdecode::dec_selftest(static_cast<std::uint32_t>(bits), out); });
}

const char* dec_warn(std::uint32_t code) {
    static KeptText buffer;
    return in_own_buffer(buffer, [&](Session&, Text& out) { out.add(ztdecode::dec_warn(code)); });
}

const char* audio_config(MessageRecord record) {
    static KeptText buffer;
    return decoded_in_own_buffer(
        buffer, &record, [](Session& s, Message& m, Text& out) { ztdecode::audio_config(s, m, out); });
}

int inListAudioOpcodes(int direction, std::uint8_t type) {
    return ztdecode::inListAudioOpcodes(session(), static_cast<std::uint32_t>(direction), type) ? 1 : 0;
}

const char* download(MessageRecord /*record*/) { return "download"; }

}  // extern "C"
