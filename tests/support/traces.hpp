#pragma once

#include <cstddef>
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

// A line with a hub's message with a super message with a hub's message ..., so many bytes at most: each
// level shows its bytes, and the text comes to millions of characters.
std::string nested_hub_line(std::size_t most);

}  // namespace ztdecode::testing
