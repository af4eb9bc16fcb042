#pragma once

#include <cstdint>

#include "core/message.hpp"

namespace ztdecode {

// A run of a message's bytes: a value, a text, the body of an event. Behind its end stands what stands there
// in the message.
struct Bytes {
    const Message& message;
    std::uint32_t first;
    std::uint32_t length;

    std::uint8_t operator[](std::uint32_t k) const noexcept { return message[std::size_t{first} + k]; }
};

}  // namespace ztdecode
