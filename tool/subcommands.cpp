#include "tool/subcommands.hpp"

#include <algorithm>
#include <array>

namespace ztdecode::tool {

std::span<const Subcommand> subcommands() noexcept {
    static constexpr auto all = std::to_array<Subcommand>({
        {"summary", "what is in traces, on one page", run_summary},
        {"findings", "what is wrong in traces, by rules", run_findings},
        {"diff", "what two traces say differently", run_diff},
        {"ladder", "who said what to whom, as a picture", run_ladder},
        {"redact", "the same trace without names, numbers, addresses and keys", run_redact},
        {"report", "traces as a page for any browser", run_report},
    });
    return all;
}

const Subcommand* subcommand(int argc, const char* const* argv) noexcept {
    if (argc < 2) return nullptr;
    const auto all = subcommands();
    const auto* const found = std::find_if(all.data(), all.data() + all.size(),
                                           [&](const Subcommand& one) { return one.name == argv[1]; });
    return found == all.data() + all.size() ? nullptr : found;
}

}  // namespace ztdecode::tool
