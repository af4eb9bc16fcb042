#include <cstdio>
#include <exception>
#include <new>

#include "tool/options.hpp"
#include "tool/run.hpp"

int main(int argc, char** argv) {
    try {
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
