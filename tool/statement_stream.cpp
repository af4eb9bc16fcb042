#include "tool/statement_stream.hpp"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "tool/files.hpp"
#include "tool/formats.hpp"
#include "tool/output/output.hpp"
#include "tool/report/record_report.hpp"

namespace ztdecode::tool {

namespace {

constexpr std::size_t at_once = 512;
constexpr std::size_t most_ahead = 16;

}  // namespace

// Nothing is written: an output that cannot be written any more is what ends the work of a decoder.
class StatementStream::Nowhere final : public Output {
  public:
    Nowhere() noexcept : Output(-1, false) {}
    void stop() noexcept { fail(EPIPE); }

  private:
    void send(std::string_view /*words*/) override {}
};

class StatementStream::FileReport final : public RecordReport {
  public:
    FileReport(StatementStream& stream, const std::string& file, Nowhere& nowhere)
        : stream_(stream), file_(file), nowhere_(nowhere), statements_(stream.empty()) {}

    void refused(std::uint64_t number, Line /*line*/, const Refusal& refusal) override {
        statements_->add(file_, number, refusal);
        give_when_many();
    }
    bool end(const LineTotals& /*totals*/, std::uint64_t /*cut*/) override {
        give();
        return true;
    }

  private:
    void record(const CapturedMessage& captured, const Record& record) override {
        statements_->add(file_, captured, record, stream_.ignored_);
        give_when_many();
    }
    void give_when_many() {
        if (statements_->size() >= at_once) give();
    }
    void give() {
        if (!stream_.give(std::exchange(statements_, nullptr))) nowhere_.stop();
        statements_ = stream_.empty();
    }

    StatementStream& stream_;
    const std::string& file_;
    Nowhere& nowhere_;
    std::unique_ptr<Statements> statements_;
};

StatementStream::StatementStream(const Options& options, const Display& display, const IgnoredFields& ignored)
    : options_(options), display_(display), ignored_(ignored), thread_([this]() noexcept { work(); }) {}

StatementStream::~StatementStream() {
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

std::unique_ptr<Statements> StatementStream::next() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return done_ || !ready_.empty(); });
    if (ready_.empty()) {
        taken_all_ = true;
        return nullptr;
    }
    auto statements = std::move(ready_.front());
    ready_.pop_front();
    changed_.notify_all();
    return statements;
}

void StatementStream::done_with(std::unique_ptr<Statements> statements) {
    statements->clear();
    const std::lock_guard lock(mutex_);
    if (empty_.size() < most_ahead) empty_.push_back(std::move(statements));
}

std::unique_ptr<Statements> StatementStream::empty() {
    const std::lock_guard lock(mutex_);
    if (empty_.empty()) return std::make_unique<Statements>();
    auto statements = std::move(empty_.back());
    empty_.pop_back();
    return statements;
}

bool StatementStream::give(std::unique_ptr<Statements> statements) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return stopped_ || ready_.size() < most_ahead; });
    if (stopped_) return false;
    ready_.push_back(std::move(statements));
    changed_.notify_all();
    return true;
}

// Nothing thrown leaves the thread.
void StatementStream::work() noexcept {
    int status = status_failed;
    try {
        status = decode();
    } catch (...) {
        write_whole(STDERR_FILENO, "ztdecode: not enough memory\n");
    }
    const std::lock_guard lock(mutex_);
    failed_ = status >= status_failed;
    done_ = true;
    changed_.notify_all();
}

int StatementStream::decode() {
    Nowhere nowhere;
    Output diagnostics(STDERR_FILENO, display_.escapes_diagnostics);
    const MakeReport make = [&](const std::string& name, Output& to) {
        const std::string& file = names_.emplace_back(name);
        return only_selected(file, options_, std::make_unique<FileReport>(*this, file, nowhere), to);
    };
    return decode_files({options_, display_, make}, nowhere, diagnostics);
}

}  // namespace ztdecode::tool
