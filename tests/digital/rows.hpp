#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "digital/digital.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {

// A message of the digital-set link and its whole text.
struct Row {
    std::string_view hex;
    std::string_view text;
};

// Each row in a session of its own.
inline void expect_rows(Decoder decoder, std::uint32_t direction, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(decoder, row.hex, direction), row.text) << row.hex;
        EXPECT_EQ(d.status, Status::recognised) << row.hex;
        EXPECT_EQ(d.error, "") << row.hex;
    }
}

inline void expect_to_system(const std::vector<Row>& rows) { expect_rows(digital::to_system, to_dhs, rows); }
inline void expect_from_system(const std::vector<Row>& rows) {
    expect_rows(digital::from_system, from_dhs, rows);
}

// The same with the high bit of the opcode, which does not count.
inline std::string with_high_bit(std::string_view hex) {
    auto data = bytes(hex);
    data[0] = static_cast<std::uint8_t>(data[0] | 0x80);
    std::string result;
    for (const std::uint8_t b : data) result += formatted("{-:02x}"_cf, b);
    return result;
}

}  // namespace ztdecode::testing
