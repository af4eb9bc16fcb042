#include "tool/run.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

#include "decode/catalog.hpp"
#include "tool/ask.hpp"
#include "tool/formats.hpp"
#include "tool/input/follow.hpp"
#include "tool/input/traces.hpp"
#include "tool/output/diagnostics.hpp"
#include "tool/output/file_outputs.hpp"
#include "tool/report/catalog.hpp"
#include "tool/trace.hpp"

namespace ztdecode::tool {

namespace {

constexpr int status_refused = 1;
constexpr int status_nothing = 1;  // of what was asked for
constexpr int status_failed = 2;

// Of several files: the worst. Where something is asked for one file that has it is enough, but for errors.
int first_status(const Options& options) { return options.selection.any() ? status_nothing : 0; }
int both(const Options& options, int a, int b) {
    if (!options.selection.any() || std::max(a, b) >= status_failed) return std::max(a, b);
    return std::min(a, b);
}

int status_of(const TraceDecoder& decoder, const Options& options) {
    if (decoder.unreadable()) return status_failed;
    if (options.selection.any()) return decoder.matched() ? 0 : status_nothing;
    return decoder.refused_lines() ? status_refused : 0;
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

int decode_opened(const std::string& file, const Options& options, const Display& display, Sessions* joined,
                  Output& out, Output& diagnostics) {
    const Descriptor descriptor(file);
    if (descriptor.get() < 0) {
        complain_of_file(file, std::strerror(errno), diagnostics);
        diagnostics.flush();
        return status_failed;
    }
    int status = first_status(options);
    const auto decode_trace = [&](const std::string& name, bool packed, Source& source) {
        const bool others_follow = packed || &file != &options.files.back();
        const auto own = joined == nullptr ? std::make_unique<Sessions>() : nullptr;
        Sessions& sessions = joined == nullptr ? *own : *joined;
        const auto decoder =
            std::make_unique<TraceDecoder>(name, make_report(name, options, display, out), options, display,
                                           others_follow, sessions, out, diagnostics);
        try {
            decoder->decode(source, packed || options.follow ? -1 : descriptor.get());
            status = both(options, status, status_of(*decoder, options));
        } catch (const FailedExpression& failed) {
            out.flush_and_release();
            complain_of_file(name + ":" + std::to_string(failed.line()), failed.what(), diagnostics);
            diagnostics.flush();
            status = status_failed;
        }
    };
    std::unique_ptr<Source> source;
    if (options.follow) {
        source = std::make_unique<FollowedSource>(file, descriptor.get(), !is_binary(options.layout));
    } else {
        source = std::make_unique<DescriptorSource>(descriptor.get());
    }
    if (source->may_wait()) out.flush();
    const Damage damage = each_trace(file, *source, !is_binary(options.layout), decode_trace);
    if (damage.why.empty()) return status;
    complain_of_file(damage.name, damage.why, diagnostics);
    diagnostics.flush();
    return status_failed;
}

// `joined`: what the files before it teach this one, null where each is a trace of its own.
int decode_file(const std::string& file, const Options& options, const Display& display, Sessions* joined,
                Output& out, Output& diagnostics) {
    try {
        return decode_opened(file, options, display, joined, out, diagnostics);
    } catch (const std::bad_alloc&) {
        out.flush_and_release();
        complain_of_file(file, std::strerror(ENOMEM), diagnostics);
        diagnostics.flush();
        return status_failed;
    }
}

// There is none left to name the file with.
int out_of_memory() noexcept {
    write_whole(STDERR_FILENO, "ztdecode: not enough memory\n");
    return status_failed;
}

// A closed pipe ends the work quietly: whoever read has seen enough.
int status_with_output(int status, int error) {
    if (error == 0 || error == EPIPE) return status;
    std::fprintf(stderr, "ztdecode: standard output: %s\n", std::strerror(error));
    return status_failed;
}

int list_catalog(const Options& options, const Display& display) {
    Output out(STDOUT_FILENO, false);
    const std::vector<CatalogRow> rows = catalog();
    if (options.format == Format::ndjson) {
        write_catalog_as_ndjson(rows, out.text);
    } else {
        write_catalog(rows, is_terminal(STDOUT_FILENO) ? terminal_width(STDOUT_FILENO) : 0, display.color,
                      out.text);
    }
    out.flush();
    return status_with_output(0, out.error());
}

int run_one_by_one(const Options& options, const Display& display) {
    Output out(STDOUT_FILENO, display.escapes_output);
    Output diagnostics(STDERR_FILENO, display.escapes_diagnostics);
    const auto joined = options.join != Join::none ? std::make_unique<Sessions>() : nullptr;
    int status = first_status(options);
    for (const std::string& file : options.files) {
        if (out.error() != 0) break;
        status = both(options, status, decode_file(file, options, display, joined.get(), out, diagnostics));
    }
    if (joined != nullptr) {
        out.flush();
        Diagnostics of_last(options.files.back(), diagnostics);
        if (complain_of_cuts(*joined, of_last, false) > 0 && options.check)
            status = std::max(status, status_refused);
        diagnostics.flush();
    }
    return status_with_output(status, out.error());
}

// Far enough from the next one for two processors to write to them at once without waiting for each other.
struct alignas(128) Job {
    Job(const std::string& name, const Display& display)
        : file(name), outputs(display.escapes_output, display.escapes_diagnostics) {}

    const std::string& file;
    FileOutputs outputs;
    int status = 0;
    bool done = false;
};

// Files are taken in their order, and their outputs go out in that order. Work runs ahead of the output by so
// many files at most: each of them may keep two temporary files open.
constexpr std::size_t farthest_ahead = 100;

// Several files at once. Nothing thrown leaves a thread.
class Jobs {
  public:
    Jobs(const Options& options, const Display& display) : options_(options), display_(display) {
        for (const std::string& file : options.files) jobs_.push_back(std::make_unique<Job>(file, display));
    }

    // As many threads as there can be: false when there is none, and nothing is done then.
    bool start() {
        const std::size_t wanted = std::min<std::size_t>(options_.jobs, jobs_.size());
        threads_.reserve(wanted);
        try {
            while (threads_.size() < wanted) threads_.emplace_back([this]() noexcept { work(); });
        } catch (const std::system_error&) {
        } catch (const std::bad_alloc&) {
        }
        return !threads_.empty();
    }

    int finish() noexcept {
        int status = first_status(options_);
        int error = 0;
        std::unique_lock lock(mutex_);
        for (; turn_ < jobs_.size() && error == 0; ++turn_) {
            Job& job = *jobs_[turn_];
            turn_has_moved_.notify_all();
            lock.unlock();
            job.outputs.your_turn();
            lock.lock();
            one_is_done_.wait(lock, [&] { return job.done; });
            status = both(options_, status, status_of(job));
            error = job.outputs.error();
            jobs_[turn_].reset();
        }
        if (error != 0) give_up(error);
        turn_ = jobs_.size();
        lock.unlock();
        turn_has_moved_.notify_all();
        for (std::thread& thread : threads_) thread.join();
        return status_with_output(status, error);
    }

  private:
    // Nobody sees what the files would give that are left.
    void give_up(int error) noexcept {
        next_ = jobs_.size();
        for (std::size_t i = turn_; i < jobs_.size(); ++i) jobs_[i]->outputs.give_up(error);
    }

    void work() noexcept {
        std::unique_lock lock(mutex_);
        while (next_ < jobs_.size()) {
            const std::size_t i = next_++;
            turn_has_moved_.wait(lock, [&] { return i < turn_ + farthest_ahead; });
            Job& job = *jobs_[i];
            lock.unlock();
            job.status = decode(job);
            lock.lock();
            job.done = true;
            one_is_done_.notify_one();
        }
    }

    int decode(Job& job) noexcept {
        Output& out = job.outputs.out();
        Output& diagnostics = job.outputs.diagnostics();
        try {
            const int status = decode_file(job.file, options_, display_, nullptr, out, diagnostics);
            job.outputs.close();
            return status;
        } catch (...) {
            return out_of_memory();
        }
    }

    int status_of(const Job& job) const noexcept {
        const int error = job.outputs.temporary_error();
        if (error == 0) return job.status;
        try {
            Output diagnostics(STDERR_FILENO, display_.escapes_diagnostics);
            complain_of_file(job.file, "temporary file: " + std::string(std::strerror(error)), diagnostics);
            diagnostics.flush();
        } catch (...) {
            return out_of_memory();
        }
        return status_failed;
    }

    const Options& options_;
    const Display& display_;
    std::vector<std::unique_ptr<Job>> jobs_;
    std::vector<std::thread> threads_;
    std::size_t next_ = 0;
    std::size_t turn_ = 0;
    std::mutex mutex_;
    std::condition_variable one_is_done_;
    std::condition_variable turn_has_moved_;
};

}  // namespace

int run(const Options& options) {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow any more is a write that fails
    const Display shown = display(options);
    if (options.catalog) return list_catalog(options, shown);
    if (options.asks()) {
        Output out(STDOUT_FILENO, shown.escapes_output);
        const int status = ask(options, shown, out);
        return status_with_output(status, out.error());
    }
    if (options.several_at_once()) {
        Jobs jobs(options, shown);
        if (jobs.start()) return jobs.finish();
    }
    return run_one_by_one(options, shown);
}

}  // namespace ztdecode::tool
