#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "he/he.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {

// A message of the HE link, without its routing bytes, and its whole text.
struct Row {
    std::string_view hex;
    std::string_view text;
};

// Each row in a session of its own.
inline void expect_rows(Decoder decoder, Status status, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(decoder, row.hex), row.text) << row.hex;
        EXPECT_EQ(d.status, status) << row.hex;
    }
}

}  // namespace ztdecode::testing
