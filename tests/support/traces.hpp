#pragma once

#include <cstdint>
#include <filesystem>
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

// The golden traces, here and in examples/; a file of tests/golden that belongs to one, by its ending.
std::vector<std::filesystem::path> golden_traces();
std::filesystem::path beside_golden(const std::filesystem::path& trace, const char* ending);

}  // namespace ztdecode::testing
