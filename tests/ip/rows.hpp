#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/tables.hpp"
#include "ip/ip.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {

// A message of the IP-set link, or an item of one, and its whole text.
struct Row {
    std::string hex;
    std::string text;
};

// Each row in a session of its own.
inline void expect_rows(Decoder decoder, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        TestSession d;
        EXPECT_EQ(d.with(decoder, row.hex), row.text) << row.hex;
        EXPECT_EQ(d.status, Status::recognised) << row.hex;
    }
}

// Each row is the one item of a message that begins with `head_hex` and is called `head`.
inline void expect_items(Decoder decoder, const std::string& head_hex, const std::string& head,
                         const std::vector<Row>& items) {
    for (const Row& item : items) {
        const std::string hex = head_hex + " " + item.hex;
        EXPECT_EQ(TestSession().with(decoder, hex), head + item.text) << hex;
    }
}

// A message in a record whose bytes go on behind it.
inline std::string in_record(TestSession& d, Decoder decoder, const std::string& hex,
                             const std::string& behind) {
    const auto record = bytes(hex + " " + behind);
    Message m(record.data(), bytes(hex).size(), record.size());
    Text out;
    {
        Decoding decoding(d.session(), m, out);
        const Decoding::Piece whole(decoding);
        decoder(decoding);
    }
    return std::string(out.view());
}

inline std::string in_record(Decoder decoder, const std::string& hex, const std::string& behind) {
    TestSession d;
    return in_record(d, decoder, hex, behind);
}

inline std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) result += text;
    return result;
}

inline std::string hex_byte(std::size_t byte) { return formatted("{-:02x} "_cf, byte); }

}  // namespace ztdecode::testing
