#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include "fuzz/bounds.hpp"

// What the fuzz targets share.

namespace ztdecode::fuzz {

inline void expect(bool holds, std::string_view what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %.*s\n", static_cast<int>(what.size()), what.data());
    std::abort();
}

inline void expect_bounded(const Cost& cost, std::size_t bytes, std::size_t messages = 1) {
    const std::string_view bound = exceeded(cost, bytes, messages);
    expect(bound.empty(), bound);
}

// What an input costs. It ends behind the first costly messages: others are tried sooner.
class Account {
  public:
    void add(const Cost& cost) { all_ += cost; }
    bool used_up() const { return all_.text > enough_text || all_.seconds > enough_time; }

  private:
    static constexpr std::size_t enough_text = std::size_t{4} << 20;
    static constexpr double enough_time = 0.2;

    Cost all_;
};

struct Record {
    std::uint8_t way;
    std::vector<std::uint8_t> bytes;  // in a block of just their size: a sanitizer sees a read behind it
};

// An input of records: a byte that says how to read it, two length bytes (low byte first), that many bytes.
// The last record has what is left.
class Records {
  public:
    Records(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    std::optional<Record> next() {
        if (size_ < 3) return std::nullopt;
        const std::size_t length = std::min<std::size_t>(data_[1] + 256U * data_[2], size_ - 3);
        Record record = {data_[0], {data_ + 3, data_ + 3 + length}};
        data_ += 3 + length;
        size_ -= 3 + length;
        return record;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
};

}  // namespace ztdecode::fuzz
