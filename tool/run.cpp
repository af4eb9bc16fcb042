#include "tool/run.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>

#include "tool/file_outputs.hpp"
#include "tool/trace.hpp"

namespace ztdecode::tool {

namespace {

constexpr int status_refused = 1;
constexpr int status_failed = 2;

bool wants_color(Color color) {
    switch (color) {
        case Color::always:
            return true;
        case Color::never:
            return false;
        default:
            break;
    }
    const char* no_color =
        std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): before any thread starts
    return ::isatty(STDOUT_FILENO) != 0 && (no_color == nullptr || *no_color == '\0');
}

class Descriptor {
  public:
    explicit Descriptor(const std::string& file)
        : standard_input_(file == "-"),
          descriptor_(standard_input_ ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (!standard_input_ && descriptor_ >= 0) ::close(descriptor_);
    }
    int get() const noexcept { return descriptor_; }

  private:
    bool standard_input_;
    int descriptor_;
};

int decode_file(const std::string& file, const Options& options, bool color, Output& out,
                Output& diagnostics) {
    const Descriptor descriptor(file);
    if (descriptor.get() < 0) {
        diagnostics.text.print("ztdecode: {}: {}\n"_cf, file, std::string_view(std::strerror(errno)));
        diagnostics.flush();
        return status_failed;
    }
    const auto decoder = std::make_unique<TraceDecoder>(file, options, color, out, diagnostics);
    decoder->decode(descriptor.get());
    if (decoder->unreadable()) return status_failed;
    return decoder->refused_lines() ? status_refused : 0;
}

// A closed pipe ends the work quietly: whoever read has seen enough.
int status_with_output(int status, int error) {
    if (error == 0 || error == EPIPE) return status;
    std::fprintf(stderr, "ztdecode: standard output: %s\n", std::strerror(error));
    return status_failed;
}

int run_one_by_one(const Options& options, bool color) {
    Output out(STDOUT_FILENO);
    Output diagnostics(STDERR_FILENO);
    int status = 0;
    for (const std::string& file : options.files) {
        if (out.error() != 0) break;
        status = std::max(status, decode_file(file, options, color, out, diagnostics));
    }
    return status_with_output(status, out.error());
}

// Far enough from the next one for two processors to write to them at once without waiting for each other.
struct alignas(128) Job {
    FileOutputs outputs;
    int status = 0;
    bool done = false;
};

// Files are taken in their order, and their outputs go out in that order. Work runs ahead of the output by so
// many files at most: each of them may keep two temporary files open.
constexpr std::size_t farthest_ahead = 100;

int run_jobs(const Options& options, bool color) {
    const std::vector<std::string>& files = options.files;
    std::vector<std::unique_ptr<Job>> jobs(files.size());
    for (auto& job : jobs) job = std::make_unique<Job>();
    std::size_t next = 0;
    std::size_t turn = 0;
    std::mutex mutex;
    std::condition_variable one_is_done;
    std::condition_variable turn_has_moved;
    auto work = [&] {
        std::unique_lock lock(mutex);
        while (next < files.size()) {
            const std::size_t i = next++;
            turn_has_moved.wait(lock, [&] { return i < turn + farthest_ahead; });
            Job& job = *jobs[i];
            lock.unlock();
            job.status = decode_file(files[i], options, color, job.outputs.out(), job.outputs.diagnostics());
            job.outputs.close();
            lock.lock();
            job.done = true;
            one_is_done.notify_one();
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < std::min<std::size_t>(options.jobs, files.size()); ++i)
        threads.emplace_back(work);
    int status = 0;
    int error = 0;
    std::unique_lock lock(mutex);
    for (; turn < files.size() && error == 0; ++turn) {
        Job& job = *jobs[turn];
        turn_has_moved.notify_all();
        lock.unlock();
        job.outputs.your_turn();
        lock.lock();
        one_is_done.wait(lock, [&] { return job.done; });
        status = std::max(status, job.status);
        error = job.outputs.error();
        jobs[turn].reset();
    }
    if (error != 0) next = files.size();  // Nobody sees what the others would give.
    turn = files.size();
    lock.unlock();
    turn_has_moved.notify_all();
    for (std::thread& thread : threads) thread.join();
    return status_with_output(status, error);
}

}  // namespace

int run(const Options& options) {
    std::signal(SIGPIPE, SIG_IGN);
    const bool color = wants_color(options.color);
    return options.jobs > 1 && options.files.size() > 1 ? run_jobs(options, color)
                                                        : run_one_by_one(options, color);
}

}  // namespace ztdecode::tool
