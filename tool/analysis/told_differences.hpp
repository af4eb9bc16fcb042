#pragma once

#include <string>
#include <string_view>

#include "tool/analysis/comparison.hpp"
#include "tool/output/output.hpp"

namespace ztdecode::tool {

// Differences in words: a line a message, and one for each value that changed.
class DifferenceTexts final : public Differences {
  public:
    struct Options {
        bool color = false;
        bool ascii = false;  // no arrows
    };
    // The names are those of the two traces.
    DifferenceTexts(std::string_view a, std::string_view b, const Options& options, Output& out)
        : name_a_(a), name_b_(b), options_(options), out_(out) {}

    void same(const Statement& a, const Statement& b) override;
    void changed(const Statement& a, const Statement& b, const std::vector<Change>& changes) override;
    void only_in_a(const Statement& a) override;
    void only_in_b(const Statement& b) override;
    void gap() override;
    bool goes_on() override;
    // What it came to.
    void end(const Compared& compared);

  private:
    enum class Mark { none, a, b, both };

    void begin();
    void color(Mark mark);
    void line(char sign, Mark mark, const Statement* a, const Statement* b);
    void message(const Statement& statement, bool with_text);
    void value(const Term& term);
    void change(const Change& change);
    void foreign(std::string_view words);

    std::string_view name_a_;
    std::string_view name_b_;
    Options options_;
    Output& out_;
    bool begun_ = false;
    std::size_t width_ = 0;  // of the widest place so far
    std::string room_;
};

// The same as JSON, one object a difference.
class DifferenceRecords final : public Differences {
  public:
    explicit DifferenceRecords(Output& out) : out_(out) {}

    void same(const Statement& a, const Statement& b) override;
    void changed(const Statement& a, const Statement& b, const std::vector<Change>& changes) override;
    void only_in_a(const Statement& a) override;
    void only_in_b(const Statement& b) override;
    void gap() override {}
    bool goes_on() override;

  private:
    void begin(std::string_view kind, const Statement* a, const Statement* b);
    void string(std::string_view words);
    void place(const Statement* statement);
    void fields(const Statement& statement);
    void name(const Term& term);
    void value(const Term& term);
    void words(const Change& change);
    void end();

    Output& out_;
    std::string room_;
};

}  // namespace ztdecode::tool
