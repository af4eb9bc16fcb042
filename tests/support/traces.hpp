#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ztdecode::testing {

struct Captured {
    std::vector<std::uint8_t> bytes;
    std::uint32_t direction = 0;
    std::string line;  // of the trace
};

// Every message of the golden traces, in the order of the files' names. Lines that are no messages are left
// out.
std::vector<Captured> golden_messages();

}  // namespace ztdecode::testing
