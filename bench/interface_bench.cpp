#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bench/hex.hpp"
#include "ztdecode.h"
#include "ztdecode_session.h"

// The C interface against what a host would pay anyway: reading a line's hexadecimal, taking a record of 5140
// bytes by value, and a fresh heap block for the result. Sessions stand beside it: they give values as well,
// and no heap block.

namespace {

constexpr std::array<signed char, 256> digit_values() {
    std::array<signed char, 256> values{};
    values.fill(-1);
    for (signed char d = 0; d < 10; ++d) values[static_cast<std::size_t>('0' + d)] = d;
    for (signed char d = 0; d < 6; ++d) {
        values[static_cast<std::size_t>('a' + d)] = static_cast<signed char>(10 + d);
        values[static_cast<std::size_t>('A' + d)] = static_cast<signed char>(10 + d);
    }
    return values;
}
constexpr auto digits = digit_values();

int hex_byte(const char* at) {
    const int high = digits[static_cast<unsigned char>(at[0])];
    const int low = digits[static_cast<unsigned char>(at[1])];
    return high < 0 || low < 0 ? -1 : high << 4 | low;
}

// Gives a copy of `result` for a line whose hexadecimal is right.
[[gnu::noinline]] char* parse_and_copy(const char* line, std::string_view result, unsigned char* record) {
    const std::size_t length = std::strlen(line);
    const int count = hex_byte(line);
    if (count < 0 || length < 3 * static_cast<std::size_t>(count) + 2) return nullptr;
    for (int k = 0; k < count; ++k) {
        const int byte = hex_byte(line + 3 + 3 * k);
        if (byte < 0) return nullptr;
        record[k] = static_cast<unsigned char>(byte);
    }
    auto* copy = static_cast<char*>(std::malloc(result.size() + 1));
    std::memcpy(copy, result.data(), result.size());
    copy[result.size()] = '\0';
    return copy;
}

[[gnu::noinline]] char* take_and_copy(MessageRecord record, std::string_view result) {
    benchmark::DoNotOptimize(record.data);
    auto* copy = static_cast<char*>(std::malloc(result.size() + 1));
    std::memcpy(copy, result.data(), result.size());
    copy[result.size()] = '\0';
    return copy;
}

struct Row {
    const char* name;
    int direction;
    const char* line;  // ten bytes
};

constexpr auto rows = std::to_array<Row>({
    {"display_line", 0, "0a 27 00 00 41 63 63 75 65 69 6c"},
    {"module_reset", 1, "0a 04 2a 1f 00 05 01 12 00 00 03"},
    {"ip_get_params", 0, "0a 13 09 00 03 04 06 07 0a 0b 0c"},
    {"he_visibility", 0, "0a 05 06 01 53 10 01 00 01 0a 07"},
    {"widget_label", 0, "0a 16 02 84 00 07 37 03 41 42 43"},
    {"hub_to_set", 0, "0a 14 10 27 00 00 4d 65 6e 75 73"},
    {"dect", 1, "0a 12 e3 01 02 03 04 05 06 07 08"},
});

void call_line(benchmark::State& state, const Row& row) {
    for (auto _ : state) {
        const char* text = line(row.line, row.direction);
        benchmark::DoNotOptimize(text);
        std::free(const_cast<char*>(text));
    }
}

void only_parse_and_copy(benchmark::State& state, const Row& row) {
    char* text = const_cast<char*>(line(row.line, row.direction));
    const std::string result = text;
    std::free(text);
    std::array<unsigned char, 256> record{};
    for (auto _ : state) {
        char* copy = parse_and_copy(row.line, result, record.data());
        benchmark::DoNotOptimize(copy);
        std::free(copy);
    }
}

MessageRecord record_of(const Row& row) {
    const auto bytes = ztdecode::bench::bytes(row.line);
    MessageRecord record{};
    record.length = bytes[0];
    std::memcpy(record.data, bytes.data() + 1, bytes[0]);
    record.direction = static_cast<std::uint32_t>(row.direction);
    return record;
}

void call_decode(benchmark::State& state, const Row& row) {
    const MessageRecord record = record_of(row);
    for (auto _ : state) {
        char* text = decode(record);
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
}

void only_take_and_copy(benchmark::State& state, const Row& row) {
    const MessageRecord record = record_of(row);
    char* text = decode(record);
    const std::string result = text;
    std::free(text);
    for (auto _ : state) {
        char* copy = take_and_copy(record, result);
        benchmark::DoNotOptimize(copy);
        std::free(copy);
    }
}

class BenchSession {
  public:
    explicit BenchSession(zt_detail detail) {
        zt_options options = ZT_OPTIONS_INIT;
        options.detail = detail;
        zt_session_create(&options, &session_);
    }
    ~BenchSession() { zt_session_destroy(session_); }
    BenchSession(const BenchSession&) = delete;
    BenchSession& operator=(const BenchSession&) = delete;
    zt_session* get() const { return session_; }

  private:
    zt_session* session_ = nullptr;
};

void session_feed(benchmark::State& state, const Row& row) {
    const BenchSession session(ZT_FIELDS);
    const std::string text = (row.direction == 0 ? "000000S " : "000000R ") + std::string(row.line);
    for (auto _ : state) {
        const zt_record* record = nullptr;
        zt_feed_line(session.get(), text.data(), text.size(), nullptr);
        while (zt_next_message(session.get(), &record) == ZT_OK) benchmark::DoNotOptimize(record->fields);
    }
}

void session_decode(benchmark::State& state, const Row& row, zt_detail detail) {
    const BenchSession session(detail);
    const MessageRecord message = record_of(row);
    const auto direction = static_cast<zt_direction>(row.direction);
    for (auto _ : state) {
        const zt_record* record = nullptr;
        zt_decode(session.get(), message.data, message.length, direction, &record);
        benchmark::DoNotOptimize(record->fields);
    }
}

const bool rows_registered = [] {
    for (const Row& row : rows) {
        const std::string name = row.name;
        benchmark::RegisterBenchmark(("line/" + name).c_str(), call_line, row);
        benchmark::RegisterBenchmark(("line/" + name + "/only_parse_and_copy").c_str(), only_parse_and_copy,
                                     row);
        benchmark::RegisterBenchmark(("exported_decode/" + name).c_str(), call_decode, row);
        benchmark::RegisterBenchmark(("exported_decode/" + name + "/only_take_and_copy").c_str(),
                                     only_take_and_copy, row);
        benchmark::RegisterBenchmark(("session_feed/" + name).c_str(), session_feed, row);
        benchmark::RegisterBenchmark(("session_decode/" + name).c_str(), session_decode, row, ZT_FIELDS);
        benchmark::RegisterBenchmark(("session_decode/" + name + "/words").c_str(), session_decode, row,
                                     ZT_WORDS);
    }
    return true;
}();

}  // namespace
