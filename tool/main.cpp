#include <sys/resource.h>

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <new>

#include "tool/options.hpp"
#include "tool/run.hpp"
#include "tool/subcommands.hpp"

namespace {

// Messages that carry each other may take most of a MiB. It is asked for before any work: where memory is
// short, a stack that cannot grow any more would end the work in the middle of a message. (One page of it is
// touched.)
[[gnu::noinline]] void ask_for_stack() {
    constexpr std::size_t deepest = std::size_t{960} << 10;
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur < 2 * deepest) return;
    volatile char stack[deepest];  // NOLINT: its end is the point
    stack[0] = 0;
    static_cast<void>(stack[0]);
}

}  // namespace

int main(int argc, char** argv) {
    ask_for_stack();
    try {
        std::signal(SIGPIPE, SIG_IGN);
        std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow any more is a write that fails
        if (const auto* const one = ztdecode::tool::subcommand(argc, argv))
            return one->run(argc - 1, argv + 1);
        const auto arguments = ztdecode::tool::parse_arguments(argc, argv);
        return arguments.options ? ztdecode::tool::run(*arguments.options) : arguments.status;
    } catch (const std::bad_alloc&) {
        std::fputs("ztdecode: not enough memory\n", stderr);
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "ztdecode: %s\n", failure.what());
        return 2;
    }
}
