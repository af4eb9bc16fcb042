#include <benchmark/benchmark.h>

#include <array>
#include <string>

#include "bench/hex.hpp"
#include "core/session.hpp"

// TestSession a message, by kind and by size. The text goes to a sink that keeps its room, as in the command.

namespace {

using namespace ztdecode;

void decode_bytes(benchmark::State& state, const std::vector<std::uint8_t>& bytes, std::uint32_t direction) {
    Session session;
    Text out;
    for (auto _ : state) {
        out.clear();
        Message m(bytes);
        m.direction = direction;
        decode(session, m, out);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["characters"] = static_cast<double>(out.size());
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

struct Kind {
    const char* name;
    std::uint32_t direction;
    const char* hex;
};

constexpr auto kinds = std::to_array<Kind>({
    {"digital/digit", to_dhs, "03 04"},
    {"digital/reset", to_dhs, "1f 00 00 02 15 20 31 02 01 0a 01 01 05 00 c8"},
    {"digital/led", from_dhs, "21 04 03"},
    {"digital/display_line", from_dhs, "27 00 00 30 38 3a 34 32 20 20 46 72 69 20 32 30 20 4e 6f 76"},
    {"digital/voice_mode", from_dhs, "29 11 fa 08"},
    {"module/key", to_dhs, "04 24 20 07"},
    {"module/reset", to_dhs, "04 2a 1f 00 05 01 12 00 00 03"},
    {"super_message", from_dhs,
     "0b 14 27 00 00 30 38 3a 34 32 20 20 46 72 69 20 32 30 20 4e 6f 76 03 21 07 00 02 32 01"},
    {"ip/init", to_dhs, "13 00 02 01"},
    {"ip/start_rtp", from_dhs, "13 01 02 00 02 7d 00 01 04 0a 00 00 05 02 02 7d 02 04 01 11 05 01 14"},
    {"ip/qos_ticket", to_dhs,
     "13 03 01 00 04 5f 3a 11 02 02 00 02 00 01 08 00 04 0a 00 00 05 09 00 04 0a 00 00 09 "
     "0a 00 04 34 37 31 31 0c 00 04 00 00 00 9c 1b 00 06 00 01 00 02 00 03"},
    {"he/digit", to_dhs, "05 01 06 03 00 05"},
    {"he/create_text", from_dhs,
     "05 06 01 52 02 03 02 00 01 02 03 04 05 00 0a 00 14 10 02 07 42 6f 6e 6a 6f 75 72"},
    {"widget/create", from_dhs, "16 80 80 00 10 24 02 00 00 26 01 00 27 01 00 12 01 28 13 01 0a 28 01 01"},
    {"widget/label", from_dhs, "16 02 84 00 07 37 03 41 42 43"},
    {"widget/event", to_dhs, "16 04 81 00 12 2b 01 02 85 02 04 6d 65 6e 75"},
    {"hub/to_set", from_dhs, "14 10 21 04 07"},
    {"hub/status", to_dhs, "14 21 01 03 09"},
    {"dect/anomaly", to_dhs, "12 13 07 09"},
});

const bool kinds_registered = [] {
    for (const Kind& kind : kinds) {
        const std::string name = std::string("decode/") + kind.name;
        benchmark::RegisterBenchmark(name.c_str(), decode_bytes, bench::bytes(kind.hex), kind.direction);
    }
    return true;
}();

// How the cost grows.

void display_line_of_length(benchmark::State& state) {
    std::vector<std::uint8_t> m(static_cast<std::size_t>(state.range(0)), 'x');
    m[0] = 0x27;
    decode_bytes(state, m, from_dhs);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(display_line_of_length)->RangeMultiplier(4)->Range(16, 4096)->Complexity(benchmark::oN);

void debug_text_of_length(benchmark::State& state) {
    std::vector<std::uint8_t> m(static_cast<std::size_t>(state.range(0)), 'x');
    m[0] = 0x18;
    decode_bytes(state, m, from_dhs);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(debug_text_of_length)->RangeMultiplier(4)->Range(16, 4096)->Complexity(benchmark::oN);

// A led command in hub messages inside each other.
void hub_in_hub(benchmark::State& state) {
    std::vector<std::uint8_t> m;
    for (std::int64_t k = 0; k < state.range(0); ++k) m.insert(m.end(), {0x14, 0x10});
    m.insert(m.end(), {0x21, 0x04, 0x03});
    decode_bytes(state, m, from_dhs);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(hub_in_hub)->RangeMultiplier(4)->Range(1, 1024)->Complexity(benchmark::oN);

// Parts of a super message, one behind the other.
void super_message_parts(benchmark::State& state) {
    std::vector<std::uint8_t> m = {0x0B};
    for (std::int64_t k = 0; k < state.range(0); ++k) m.insert(m.end(), {0x03, 0x21, 0x04, 0x03});
    decode_bytes(state, m, from_dhs);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(super_message_parts)->RangeMultiplier(4)->Range(1, 1024)->Complexity(benchmark::oN);

// A module's super messages inside each other: each level shows the text of the one inside it once more.
void module_super_in_super(benchmark::State& state) {
    Session session;
    session.change(session.digital.modules.types[4]) = 4;
    std::vector<std::uint8_t> inner = {0x46};
    for (std::int64_t k = 0; k < state.range(0); ++k) {
        std::vector<std::uint8_t> outer = {0x0B, static_cast<std::uint8_t>(inner.size())};
        outer.insert(outer.end(), inner.begin(), inner.end());
        inner = outer;
    }
    std::vector<std::uint8_t> m = {0x02, 0x04};
    m.insert(m.end(), inner.begin(), inner.end());
    Text out;
    for (auto _ : state) {
        out.clear();
        Message message(m);
        message.direction = from_dhs;
        decode(session, message, out);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["characters"] = static_cast<double>(out.size());
}
BENCHMARK(module_super_in_super)->DenseRange(1, 12, 1);

}  // namespace
