#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tool/analysis/comparison.hpp"
#include "tool/display.hpp"
#include "tool/options.hpp"

namespace ztdecode::tool {

// What a file says, decoded by a thread of its own a little ahead of who asks for it.
class StatementStream final : public StatementSource {
  public:
    // `options` names the file; all of these stay as long as this.
    StatementStream(const Options& options, const Display& display, const IgnoredFields& ignored);
    ~StatementStream() override;
    StatementStream(const StatementStream&) = delete;
    StatementStream& operator=(const StatementStream&) = delete;

    std::unique_ptr<Statements> next() override;
    void done_with(std::unique_ptr<Statements> statements) override;
    bool failed() const override { return taken_all_ && failed_; }

  private:
    class FileReport;
    class Nowhere;

    void work() noexcept;
    int decode();
    // For the thread. False when nobody asks any more.
    bool give(std::unique_ptr<Statements> statements);
    std::unique_ptr<Statements> empty();

    const Options& options_;
    const Display& display_;
    const IgnoredFields& ignored_;
    std::deque<std::string> names_;  // of the files and their members
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::unique_ptr<Statements>> ready_;
    std::vector<std::unique_ptr<Statements>> empty_;
    bool done_ = false;
    bool failed_ = false;
    bool stopped_ = false;
    bool taken_all_ = false;  // for those who ask
    std::thread thread_;
};

}  // namespace ztdecode::tool
