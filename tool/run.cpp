#include "tool/run.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>

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

// What a file gives while another one's turn it is: kept in a temporary file without a name.
class Spool {
  public:
    Spool() : file_(std::tmpfile()), output_(file_ == nullptr ? -1 : ::fileno(file_)) {}
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;
    ~Spool() {
        if (file_ != nullptr) std::fclose(file_);
    }
    Output& output() noexcept { return output_; }

    void copy_to(Output& to) {
        if (file_ == nullptr) return;
        const int from = ::fileno(file_);
        ::lseek(from, 0, SEEK_SET);
        char block[64 * 1024];
        for (ssize_t n = 0; to.error() == 0 && (n = ::read(from, block, sizeof block)) > 0;) {
            to.text.add({block, static_cast<std::size_t>(n)});
            to.flush();
        }
    }

  private:
    std::FILE* file_;
    Output output_;
};

struct Job {
    Spool out;
    Spool diagnostics;
    int status = 0;
    bool done = false;
};

// Files are taken in their order; each one's output is copied when all before it have been.
int run_jobs(const Options& options, bool color) {
    const std::vector<std::string>& files = options.files;
    std::vector<std::unique_ptr<Job>> jobs(files.size());
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::condition_variable one_is_done;
    auto work = [&] {
        for (std::size_t i = next++; i < files.size(); i = next++) {
            auto job = std::make_unique<Job>();
            job->status = decode_file(files[i], options, color, job->out.output(), job->diagnostics.output());
            const std::lock_guard lock(mutex);
            job->done = true;
            jobs[i] = std::move(job);
            one_is_done.notify_one();
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < std::min<std::size_t>(options.jobs, files.size()); ++i)
        threads.emplace_back(work);
    Output out(STDOUT_FILENO);
    Output diagnostics(STDERR_FILENO);
    int status = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::unique_ptr<Job> job;
        {
            std::unique_lock lock(mutex);
            one_is_done.wait(lock, [&] { return jobs[i] != nullptr; });
            job = std::move(jobs[i]);
        }
        job->out.copy_to(out);
        job->diagnostics.copy_to(diagnostics);
        status = std::max(status, job->status);
        const int spooled = job->out.output().error();
        if (spooled != 0) status = status_with_output(status, spooled);
    }
    for (std::thread& thread : threads) thread.join();
    return status_with_output(status, out.error());
}

}  // namespace

int run(const Options& options) {
    std::signal(SIGPIPE, SIG_IGN);
    const bool color = wants_color(options.color);
    return options.jobs > 1 && options.files.size() > 1 ? run_jobs(options, color)
                                                        : run_one_by_one(options, color);
}

}  // namespace ztdecode::tool
