#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

// What the fuzz targets share.

namespace ztdecode::fuzz {

inline void expect(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

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
