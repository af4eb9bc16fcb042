#include "he/he.hpp"

#include "abi/process.hpp"

using ztdecode::abi::KeptText;

namespace {

// The block of an application's name is always this large; the longest name has 24 characters.
constexpr std::size_t name_block = 30;

}  // namespace

extern "C" {

const char* he2dhs(MessageRecord* record) {
    static KeptText buffer;
    return ztdecode::abi::decoded_in_own_buffer(buffer, record, ztdecode::he::to_system);
}

const char* dhs2he(MessageRecord* record) {
    static KeptText buffer;
    return ztdecode::abi::decoded_in_own_buffer(buffer, record, ztdecode::he::from_system);
}

// Numbers that no byte holds are shown as the hexadecimal number that they are.
char* apId(int id) {
    auto* block = static_cast<char*>(std::malloc(name_block));  // NOLINT: the host frees it
    if (block == nullptr) return ztdecode::abi::heap_copy("memory exhausted: will crash on freeing this.\n");
    *ztdecode::he::application({static_cast<std::uint32_t>(id)}).write(block) = '\0';
    return block;
}
}
