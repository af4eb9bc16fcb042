#include "object/input.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace ztdecode::testing {
namespace {

using namespace object;

class Input : public ::testing::Test {
  protected:
    Input() { in_buf.fill(0xEE); }

    void read(std::string_view text) {
        out.clear();
        count = read_numbers(text, in_buf, out);
    }
    void expect(const std::vector<std::uint8_t>& bytes, std::uint16_t n, const char* complaint) {
        EXPECT_EQ(std::vector<std::uint8_t>(in_buf.begin(),
                                            in_buf.begin() + static_cast<std::ptrdiff_t>(bytes.size())),
                  bytes);
        EXPECT_EQ(count, n);
        EXPECT_EQ(out.view(), complaint);
    }

    std::array<std::uint8_t, input_capacity> in_buf;
    std::uint16_t count = 0;
    Text out;
};

TEST_F(Input, Fields) {
    read("01 02 ff FF a 0");
    expect({0x01, 0x02, 0xFF, 0xFF, 0x0A, 0x00, 0xEE}, 6, "");
    read("\t\n 01\r\n\t02 \r");
    expect({0x01, 0x02, 0xFF}, 2, "");
    read("");
    expect({0x01}, 0, "");
    read(" \t\r\n");
    expect({0x01}, 0, "");
}

TEST_F(Input, WhatIsNoNumber) {
    read("zz 1g g1 -1 +2 0x -");
    expect({0x00, 0x01, 0x00, 0xFF, 0x02, 0x00, 0x00, 0xEE}, 7, "");
}

TEST_F(Input, TheFirstFieldMayBeLong) {
    read("0345 02");
    expect({0x45, 0x02, 0xEE}, 2, "");
    read("0x1F 02");
    expect({0x1F, 0x02}, 2, "");
    read("fffffffffffffffffffffffffffffffffffff");  // as large as a number can be
    expect({0xFF}, 1, "");
    read("-fffffffffffffffffffffffffffffffffffff");
    expect({0x00}, 1, "");
}

TEST_F(Input, LongFields) {
    read("01 02 0345");
    expect({0x01, 0x02, 0xEE}, 0, "\nhexa conv error\n");
    read("01 345 02");
    expect({0x01, 0x02}, 0, "\nhexa conv error\n");
    read("0345 345");
    expect({0x45, 0x02}, 0, "\nhexa conv error\n");
}

TEST_F(Input, ManyFields) {
    std::string text;
    for (int i = 0; i < 2998; ++i) text += "2a ";
    read(text);
    expect(std::vector<std::uint8_t>(2998, 0x2A), 2998, "");
    EXPECT_EQ(in_buf[2998], 0xEE);

    read(text + "2b");
    EXPECT_EQ(count, 0);
    EXPECT_EQ(out.view(), "\ntoo many fields in input file");
    EXPECT_EQ(in_buf[2998], 0x2B);

    read(text + "2b 2c 2d");
    EXPECT_EQ(count, 0);
    EXPECT_EQ(out.view(), "\ntoo many fields in input file");
    EXPECT_EQ(in_buf[2999], 0xEE);

    // The next field is looked at before the fields are counted.
    read(text + "2b 345");
    EXPECT_EQ(count, 0);
    EXPECT_EQ(out.view(), "\nhexa conv error\n");
}

}  // namespace
}  // namespace ztdecode::testing
