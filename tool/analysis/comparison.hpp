#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

#include "tool/analysis/alignment.hpp"
#include "tool/analysis/statement.hpp"

namespace ztdecode::tool {

// What a trace says, in the order of its lines.
class StatementSource {
  public:
    StatementSource() = default;
    StatementSource(const StatementSource&) = delete;
    StatementSource& operator=(const StatementSource&) = delete;
    virtual ~StatementSource() = default;

    // The next ones; null behind the last.
    virtual std::unique_ptr<Statements> next() = 0;
    // Takes back what has been looked at.
    virtual void done_with(std::unique_ptr<Statements> statements) = 0;
    // The trace could not be read to its end: that there is none behind the last one says nothing then.
    virtual bool failed() const = 0;
};

// What is said of one message in two traces: a term in both, or in one of them.
struct Change {
    Term a;
    Term b;
    bool in_a = false;
    bool in_b = false;
};

// Who is told what is different.
class Differences {
  public:
    Differences() = default;
    Differences(const Differences&) = delete;
    Differences& operator=(const Differences&) = delete;
    virtual ~Differences() = default;

    // Both say the same here: context.
    virtual void same(const Statement& a, const Statement& b) = 0;
    virtual void changed(const Statement& a, const Statement& b, const std::vector<Change>& changes) = 0;
    virtual void only_in_a(const Statement& a) = 0;
    virtual void only_in_b(const Statement& b) = 0;
    // What follows does not follow at once.
    virtual void gap() = 0;
    // A place to stop, when nobody reads on.
    virtual bool goes_on() = 0;
};

struct Compared {
    std::uint64_t same = 0;
    std::uint64_t changed = 0;
    std::uint64_t only_in_a = 0;
    std::uint64_t only_in_b = 0;

    bool different() const noexcept { return changed + only_in_a + only_in_b > 0; }
};

// Goes through two traces side by side as long as they say the same. Where they do not, so much of both is
// looked at as it takes until they say the same again for a while; nothing else is kept.
class Comparison {
  public:
    Comparison(StatementSource& a, StatementSource& b, std::size_t context, Differences& differences);

    // Gives what it came to; nothing is told any more where a trace cannot be read on.
    Compared run();

  private:
    // The statements of a trace that are at hand: a few that are done with, and those ahead.
    class Window {
      public:
        Window(StatementSource& source, std::size_t context) : source_(source), context_(context) {}

        // Whether there is a k-th statement ahead.
        bool has(std::size_t k);
        const Statement& ahead(std::size_t k) const { return kept_[passed_ + k]; }
        // `ago` steps back from the next one.
        const Statement& behind(std::size_t ago) const { return kept_[passed_ - ago]; }
        std::size_t size() const noexcept { return kept_.size() - passed_; }
        void pass();

      private:
        struct Held {
            std::unique_ptr<Statements> statements;
            std::size_t left;
        };
        StatementSource& source_;
        std::size_t context_;
        std::deque<Held> held_;
        std::deque<Statement> kept_;
        std::size_t passed_ = 0;
        bool ended_ = false;
    };

    void differ();
    std::vector<Step> steps(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b,
                            bool reversed) const;
    void tell(const std::vector<Step>& steps);
    void tell_same();
    void begin_difference();
    void tell_changed(const Statement& a, const Statement& b);

    StatementSource& source_a_;
    StatementSource& source_b_;
    Window a_;
    Window b_;
    std::size_t context_;
    Differences& differences_;
    Compared compared_;
    std::size_t to_show_ = 0;  // as context behind what was different
    std::size_t unshown_ = 0;  // statements that were the same, context at most
    bool skipped_ = false;     // others before those
    bool broken_ = false;      // a trace could not be read to its end
};

// What is different in what two messages say.
std::vector<Change> changes(const Statement& a, const Statement& b);

}  // namespace ztdecode::tool
