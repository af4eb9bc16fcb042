// The header in C++20: its names have C linkage, its records are standard-layout, and a host can use both.

#include "ztdecode.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

template <class Record, std::size_t Size>
constexpr bool is_plain =
    sizeof(Record) == Size&& std::is_standard_layout_v<Record>&& std::is_trivial_v<Record>;

constexpr std::size_t pointer = sizeof(void*);

static_assert(is_plain<MessageRecord, 5140>);
static_assert(is_plain<ztdecode_name_record, 31>);
static_assert(is_plain<ztdecode_property_record, 34>);
static_assert(is_plain<ztdecode_class_record, 32 + pointer>);
static_assert(is_plain<ztdecode_block_record, 8 + pointer>);
static_assert(is_plain<ztdecode_glyph_record, 2 * pointer>);
static_assert(is_plain<ztdecode_flex_row, 4>);
static_assert(
    std::is_same_v<decltype(subSuper), const char*(MessageRecord*, const char* (*)(MessageRecord*))>);
static_assert(std::is_same_v<decltype(Version), const char*>);

namespace {

// A decoder of a C++ host is a function like any other.
const char* named(MessageRecord* record) { return record->data[2] == 1 ? "one" : "other"; }

}  // namespace

int main() {
    MessageRecord record{};
    record.length = 1;
    record.data[0] = 0x2A;
    char* text = decode(record);
    const bool decoded = std::strcmp(text, "\t- version inquiry") == 0;
    std::free(text);

    const std::uint8_t super[] = {4, 0x2A, 0x0B, 1, 1, 1, 2};
    std::memcpy(record.data, super, sizeof super);
    record.length = sizeof super;
    const bool split = std::strcmp(subSuper(&record, named), "super message\n\t\t- one\n\t\t- other\n") == 0;
    return decoded && split && useColor == 0 && std::strcmp(Tab_Servers_def[0].name, "Call") == 0 ? 0 : 1;
}
