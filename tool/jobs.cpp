#include "tool/jobs.hpp"

#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "tool/output/diagnostics.hpp"
#include "tool/output/file_outputs.hpp"

namespace ztdecode::tool {

namespace {

// There is none left to name the file with.
int out_of_memory() noexcept {
    write_whole(STDERR_FILENO, "ztdecode: not enough memory\n");
    return status_failed;
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
    explicit Jobs(const FileDecoding& decoding)
        : options_(decoding.options), display_(decoding.display), decoding_(decoding) {
        for (const std::string& file : options_.files) jobs_.push_back(std::make_unique<Job>(file, display_));
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
        return status_with_output(options_, status, error);
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
            const int status = decode_file(job.file, decoding_, nullptr, out, diagnostics);
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
    const FileDecoding& decoding_;
    std::vector<std::unique_ptr<Job>> jobs_;
    std::vector<std::thread> threads_;
    std::size_t next_ = 0;
    std::size_t turn_ = 0;
    std::mutex mutex_;
    std::condition_variable one_is_done_;
    std::condition_variable turn_has_moved_;
};

}  // namespace

std::optional<int> decode_at_once(const FileDecoding& decoding) {
    Jobs jobs(decoding);
    if (!jobs.start()) return std::nullopt;
    return jobs.finish();
}

}  // namespace ztdecode::tool
