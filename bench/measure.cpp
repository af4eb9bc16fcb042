// usage: measure INPUT OUTPUT COMMAND [ARGUMENT...]
// Runs the command with its standard input and output from and to these files and prints what it took:
// microseconds of user and system time, microseconds of wall time, KiB of peak memory.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace {

void move_to(int descriptor, int wanted) {
    if (descriptor < 0 || ::dup2(descriptor, wanted) < 0) ::_exit(126);
    ::close(descriptor);
}

long microseconds(const timeval& t) { return t.tv_sec * 1'000'000L + t.tv_usec; }

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fputs("usage: measure INPUT OUTPUT COMMAND [ARGUMENT...]\n", stderr);
        return 2;
    }
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child < 0) return 1;
    if (child == 0) {
        move_to(::open(argv[1], O_RDONLY), STDIN_FILENO);
        move_to(::open(argv[2], O_WRONLY | O_CREAT | O_TRUNC, 0666), STDOUT_FILENO);
        ::execvp(argv[3], argv + 3);
        ::_exit(127);
    }
    int status = 0;
    rusage used{};
    if (::wait4(child, &status, 0, &used) != child) return 1;
    const auto wall = std::chrono::steady_clock::now() - begin;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "measure: %s ended with status %d\n", argv[3],
                     WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
        return 1;
    }
    std::printf("%ld %ld %ld\n", microseconds(used.ru_utime) + microseconds(used.ru_stime),
                static_cast<long>(std::chrono::duration_cast<std::chrono::microseconds>(wall).count()),
                used.ru_maxrss);
    return 0;
}
