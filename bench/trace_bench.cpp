#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>

#include "bench/trace_file.hpp"
#include "tool/formats.hpp"
#include "tool/trace.hpp"

// The command's loop: a trace in memory, the output thrown away.

namespace {

using namespace ztdecode;

constexpr int lines = 10000;

class MemoryFile {
  public:
    explicit MemoryFile(const Text& contents) : descriptor_(::memfd_create("trace", MFD_CLOEXEC)) {
        for (std::string_view left = contents.view(); !left.empty();) {
            const ssize_t n = ::write(descriptor_, left.data(), left.size());
            if (n <= 0) std::abort();
            left.remove_prefix(static_cast<std::size_t>(n));
        }
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor_); }
    int from_the_start() const {
        ::lseek(descriptor_, 0, SEEK_SET);
        return descriptor_;
    }

  private:
    int descriptor_;
};

struct Case {
    const char* name;
    const char* layout;
    void (*set)(tool::Options&);
};

void decode_trace(benchmark::State& state, const Case& c) {
    tool::Options options;
    c.set(options);
    bench::TraceFile file(*bench::layout_named(c.layout), from_dhs);
    Text trace;
    for (int k = 0; k < lines; ++k) file.write(trace);
    const MemoryFile input(trace);
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    for (auto _ : state) {
        tool::Output out(null, false);
        tool::Output diagnostics(null, false);
        tool::Sessions sessions;
        tool::TraceDecoder decoder("trace", tool::make_report("trace", options, {}, out), options, {}, false,
                                   sessions, out, diagnostics);
        tool::DescriptorSource source(input.from_the_start());
        decoder.decode(source, -1);
    }
    ::close(null);
    state.SetItemsProcessed(state.iterations() * lines);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(trace.size()));
}

const bool registered = [] {
    using tool::Layout;
    for (const Case& c : {
             Case{"spzt", "spzt", [](tool::Options&) {}},
             Case{"tagged", "zt", [](tool::Options&) {}},
             Case{"lng2", "lng2", [](tool::Options& o) { o.layout = Layout::line_lng2; }},
             Case{"bin1", "bin1", [](tool::Options& o) { o.layout = Layout::bin1; }},
             Case{"bin2", "bin2", [](tool::Options& o) { o.layout = Layout::bin2; }},
             Case{"without_input", "spzt", [](tool::Options& o) { o.input = false; }},
             Case{"audio_only", "spzt", [](tool::Options& o) { o.audio_only = true; }},
             Case{"explain", "spzt", [](tool::Options& o) { o.explain = true; }},
         }) {
        benchmark::RegisterBenchmark((std::string("trace/") + c.name).c_str(), decode_trace, c);
    }
    return true;
}();

}  // namespace
