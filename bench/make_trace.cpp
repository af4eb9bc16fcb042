// usage: make-trace LINES [LAYOUT [to|from]]
// Writes a trace of an office's traffic to standard output, the same for the same arguments. LAYOUT is one of
// the layouts of the command, or zt-lng2 for tagged lines that always have two length bytes. Layouts without
// a direction column hold the messages of one direction: those from the system, unless "to" is named.

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/trace_file.hpp"

int main(int argc, char** argv) {
    using namespace ztdecode;
    const unsigned long lines = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
    const bench::TraceLayout* layout = bench::layout_named(argc > 2 ? argv[2] : "spzt");
    const std::string_view way = argc > 3 ? argv[3] : "from";
    if (lines == 0 || layout == nullptr) {
        std::fputs("usage: make-trace LINES [spzt|spzt-lng2|zt|zt-lng2|line|lng2|bin1|bin2 [to|from]]\n",
                   stderr);
        return 2;
    }
    bench::TraceFile file(*layout, way == "to" ? to_dhs : from_dhs);
    Text out;
    for (unsigned long n = 1; n <= lines; ++n) {
        file.write(out);
        if (out.size() < 65536 && n < lines) continue;
        std::fwrite(out.data(), 1, out.size(), stdout);
        out.clear();
    }
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
