// usage: make-trace LINES [LAYOUT [to|from [FAULT]]]
// Writes a trace of an office's traffic to standard output, the same for the same arguments. LAYOUT is one of
// the layouts of the command, or zt-lng2 for tagged lines that always have two length bytes. Layouts without
// a direction column hold the messages of one direction: those from the system, unless "to" is named. Half
// way through, what the rule FAULT finds goes wrong (docs/findings.md); refused-line is a line of an spzt
// trace.

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/office_faults.hpp"
#include "bench/trace_file.hpp"

int main(int argc, char** argv) {
    using namespace ztdecode;
    const unsigned long lines = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
    const bench::TraceLayout* layout = bench::layout_named(argc > 2 ? argv[2] : "spzt");
    const std::string_view way = argc > 3 ? argv[3] : "from";
    const std::string_view fault = argc > 4 ? argv[4] : "";
    if (lines == 0 || layout == nullptr) {
        std::fputs(
            "usage: make-trace LINES [spzt|spzt-lng2|zt|zt-lng2|line|lng2|bin1|bin2 [to|from [FAULT]]]\n",
            stderr);
        return 2;
    }
    bench::TraceFile file(*layout, way == "to" ? to_dhs : from_dhs);
    Text out;
    for (unsigned long n = 1; n <= lines; ++n) {
        if (n == lines / 2 && fault == "refused-line") {
            out.add("000000S 05 21\n");
        } else if (n == lines / 2 && !fault.empty() && !bench::plant(fault, file.office())) {
            std::fputs("make-trace: no such fault\n", stderr);
            return 2;
        }
        file.write(out);
        if (out.size() < 65536 && n < lines) continue;
        std::fwrite(out.data(), 1, out.size(), stdout);
        out.clear();
    }
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
