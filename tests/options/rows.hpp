#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

#include "digital/options/options.hpp"
#include "support/support.hpp"

namespace ztdecode::testing {

struct Row {
    std::string_view hex;
    std::string_view text;
};

// What a decoder writes for a message in a record of the test's.
inline void decode_message(Decoder decoder, TestSession& d, const Message& m, Text& out) {
    Decoding decoding(d.session(), m, out);
    decoder(decoding);
}

// Each row in a session of its own.
inline void expect_texts(Decoder decoder, std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(TestSession().with(decoder, row.hex), row.text) << row.hex;
    }
}

// Every value of byte 2, with and without bit 7: the text of its row, or what `other` says of the byte.
// The parameters are 01 00, which is also a super message's one part, a "nop".
template <class Other>
void expect_opcodes(Decoder decoder, const std::map<unsigned, std::string_view>& texts, Other other) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const auto row = texts.find(byte & 0x7F);
        const std::string expected = row != texts.end() ? std::string(row->second) : other(byte);
        const std::string hex = formatted("02 2a {-:02x} 01 00"_cf, byte);
        EXPECT_EQ(TestSession().with(decoder, hex), expected) << hex;
    }
}

// Every value of byte `k`, the others as in `hex`: the text of its row, or `other`.
inline void expect_values(Decoder decoder, std::string_view hex, std::size_t k,
                          const std::map<unsigned, std::string_view>& texts, std::string_view other) {
    for (unsigned value = 0; value < 256; ++value) {
        const auto row = texts.find(value);
        std::string changed(hex);
        changed.replace(3 * k, 2, formatted("{-:02x}"_cf, value));
        EXPECT_EQ(TestSession().with(decoder, changed), row != texts.end() ? row->second : other) << changed;
    }
}

}  // namespace ztdecode::testing
