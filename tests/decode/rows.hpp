#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/support.hpp"

namespace ztdecode::testing {

// A message as it was captured and its whole text.
struct Row {
    std::string_view hex;
    std::string_view text;
};

// Each row in a session of its own.
inline void expect_to_dhs(const std::vector<Row>& rows) {
    for (const Row& row : rows) EXPECT_EQ(TestSession().to_dhs(row.hex), row.text) << row.hex;
}

inline void expect_from_dhs(const std::vector<Row>& rows) {
    for (const Row& row : rows) EXPECT_EQ(TestSession().from_dhs(row.hex), row.text) << row.hex;
}

}  // namespace ztdecode::testing
