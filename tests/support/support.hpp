#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/decoding.hpp"
#include "core/session.hpp"
#include "core/tables.hpp"

namespace ztdecode::testing {

// "0a 1f" or "0a1f" to bytes; throws on anything else.
std::vector<std::uint8_t> bytes(std::string_view hex);

// A session of its own with everything that it writes on the side.
class TestSession : public SideChannel {
  public:
    TestSession();

    // The whole text for a message as it was captured.
    std::string decode(std::string_view hex, std::uint32_t direction);
    std::string to_dhs(std::string_view hex) { return decode(hex, ztdecode::to_dhs); }
    std::string from_dhs(std::string_view hex) { return decode(hex, ztdecode::from_dhs); }

    // What one decoder writes for a message, and the status and route that it leaves.
    std::string with(Decoder decoder, std::string_view hex, std::uint32_t direction = ztdecode::from_dhs);

    void standard_output(std::string_view text) override { output += text; }
    void standard_error(std::string_view text) override { error += text; }

    Session& session() { return *session_; }

    Status status = Status::none;
    std::uint32_t route = 0;
    Outcome outcome = Outcome::decoded;
    std::string output;
    std::string error;

  private:
    std::unique_ptr<Session> session_;
};

}  // namespace ztdecode::testing
