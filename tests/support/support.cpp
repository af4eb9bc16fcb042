#include "support/support.hpp"

#include <cctype>
#include <stdexcept>

namespace ztdecode::testing {

namespace {

std::uint8_t digit(char c) {
    if (c >= '0' && c <= '9') return static_cast<std::uint8_t>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<std::uint8_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<std::uint8_t>(c - 'A' + 10);
    throw std::invalid_argument("not a hexadecimal digit");
}

}  // namespace

std::vector<std::uint8_t> bytes(std::string_view hex) {
    std::vector<std::uint8_t> result;
    for (std::size_t i = 0; i < hex.size();) {
        if (hex[i] == ' ') {
            ++i;
            continue;
        }
        if (i + 1 == hex.size()) throw std::invalid_argument("half a byte");
        result.push_back(static_cast<std::uint8_t>(digit(hex[i]) << 4 | digit(hex[i + 1])));
        i += 2;
    }
    return result;
}

TestSession::TestSession() : session_(std::make_unique<Session>()) { session_->side = this; }

std::string TestSession::decode(std::string_view hex, std::uint32_t direction) {
    const auto data = bytes(hex);
    Message m(data);
    m.direction = direction;
    Text out;
    outcome = ztdecode::decode(*session_, m, out);
    return std::string(out.view());
}

std::string TestSession::with(Decoder decoder, std::string_view hex, std::uint32_t direction) {
    const auto data = bytes(hex);
    Message m(data);
    m.direction = direction;
    Text out;
    Captured captured(*session_, out);
    {
        Decoding d(*session_, m, out);
        const Decoding::Piece whole(d);
        decoder(d);
        status = d.status;
        route = d.route;
    }
    captured.done();
    return std::string(out.view());
}

}  // namespace ztdecode::testing
