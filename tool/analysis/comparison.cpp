#include "tool/analysis/comparison.hpp"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace ztdecode::tool {

namespace {

// So many statements in a row that are the same: the traces go together again.
constexpr std::size_t together_again = 16;
constexpr std::size_t first_look = 64;

// What is the same gets the same number.
class Numbered {
  public:
    std::uint32_t operator()(std::string_view words) {
        return numbers_.try_emplace(words, static_cast<std::uint32_t>(numbers_.size())).first->second;
    }

  private:
    std::unordered_map<std::string_view, std::uint32_t> numbers_;
};

void turn_round(std::vector<Step>& steps) {
    for (Step& step : steps) std::swap(step.a, step.b);
}

// Between two steps that have both, what is only in a comes first.
void put_in_order(std::vector<Step>& steps) {
    const auto has_both = [](const Step& step) { return step.both(); };
    for (auto first = steps.begin(); first != steps.end();) {
        const auto last = std::find_if(first, steps.end(), has_both);
        std::stable_partition(first, last, [](const Step& step) { return step.a != Step::nothing; });
        first = std::find_if_not(last, steps.end(), has_both);
    }
}

// Which of the two comes first decides what is brought together where there is a choice: not the order that
// they were named in.
std::vector<Step> aligned(std::vector<std::uint32_t> a, std::vector<std::uint32_t> b, bool reversed,
                          const Likeness& likeness) {
    if (reversed) std::swap(a, b);
    std::vector<Step> steps = align(a, b);
    if (reversed) {
        bring_together(steps, [&](std::uint32_t i, std::uint32_t k) { return likeness(k, i); });
        turn_round(steps);
    } else {
        bring_together(steps, likeness);
    }
    put_in_order(steps);
    return steps;
}

std::vector<Term> terms_of(const Statement& statement) {
    std::vector<Term> all;
    Terms terms(statement);
    for (Term term; terms.next(term);) all.push_back(term);
    return all;
}

bool same_kind(const Term& a, const Term& b) {
    return a.is == b.is && a.depth == b.depth && a.name == b.name &&
           (a.is != Term::Is::message || a.words == b.words);
}

// Values that are only there in one of the messages have words of their own around them.
void leave_out_words(std::vector<Change>& changes) {
    const auto in_one = [](const Change& change) { return !change.in_a || !change.in_b; };
    if (std::none_of(changes.begin(), changes.end(), in_one)) return;
    std::erase_if(changes, [](const Change& change) {
        return (change.in_a ? change.a : change.b).is == Term::Is::words;
    });
}

// Messages are alike that are called alike, the more so the more they have in common.
std::uint32_t alike(const Statement& a, const Statement& b) {
    constexpr std::uint32_t called_alike = 100;
    constexpr std::uint32_t all_in_common = 1000;
    Terms terms_a(a);
    Terms terms_b(b);
    Term x;
    Term y;
    terms_a.next(x);
    terms_b.next(y);
    if (a.direction() != b.direction() || x.whole != y.whole) return 0;
    std::vector<std::string_view> of_a;
    std::vector<std::string_view> of_b;
    while (terms_a.next(x)) of_a.push_back(x.whole);
    while (terms_b.next(y)) of_b.push_back(y.whole);
    const std::size_t most = std::max(of_a.size(), of_b.size());
    if (most == 0) return called_alike;
    std::sort(of_a.begin(), of_a.end());
    std::sort(of_b.begin(), of_b.end());
    std::vector<std::string_view> common;
    std::set_intersection(of_a.begin(), of_a.end(), of_b.begin(), of_b.end(), std::back_inserter(common));
    return called_alike + static_cast<std::uint32_t>(all_in_common * common.size() / most);
}

}  // namespace

std::vector<Change> changes(const Statement& a, const Statement& b) {
    const std::vector<Term> of_a = terms_of(a);
    const std::vector<Term> of_b = terms_of(b);
    Numbered numbered;
    std::vector<std::uint32_t> numbers_a;
    std::vector<std::uint32_t> numbers_b;
    for (const Term& term : of_a) numbers_a.push_back(numbered(term.whole));
    for (const Term& term : of_b) numbers_b.push_back(numbered(term.whole));
    const auto steps =
        aligned(std::move(numbers_a), std::move(numbers_b), b.meaning < a.meaning,
                [&](std::uint32_t i, std::uint32_t k) { return same_kind(of_a[i], of_b[k]) ? 1U : 0U; });
    std::vector<Change> result;
    for (const Step& step : steps) {
        if (step.same) continue;
        Change& change = result.emplace_back();
        change.in_a = step.a != Step::nothing;
        change.in_b = step.b != Step::nothing;
        if (change.in_a) change.a = of_a[step.a];
        if (change.in_b) change.b = of_b[step.b];
    }
    leave_out_words(result);
    return result;
}

bool Comparison::Window::has(std::size_t k) {
    while (size() <= k && !ended_) {
        auto statements = source_.next();
        if (statements == nullptr) {
            ended_ = true;
        } else {
            const std::size_t n = statements->size();
            for (std::size_t i = 0; i < n; ++i) kept_.push_back((*statements)[i]);
            if (n > 0) held_.push_back({std::move(statements), n});
        }
    }
    return size() > k;
}

void Comparison::Window::pass() {
    if (passed_ < context_) {
        ++passed_;
        return;
    }
    kept_.pop_front();
    if (--held_.front().left > 0) return;
    source_.done_with(std::move(held_.front().statements));
    held_.pop_front();
}

Comparison::Comparison(StatementSource& a, StatementSource& b, std::size_t context, Differences& differences)
    : source_a_(a),
      source_b_(b),
      a_(a, context),
      b_(b, context),
      context_(context),
      differences_(differences) {}

Compared Comparison::run() {
    while (!broken_ && differences_.goes_on()) {
        const bool in_a = a_.has(0);
        const bool in_b = b_.has(0);
        if (in_a && in_b && a_.ahead(0).meaning == b_.ahead(0).meaning) {
            tell_same();
        } else if (in_a || in_b) {
            differ();
        } else {
            break;
        }
    }
    return compared_;
}

void Comparison::tell_same() {
    ++compared_.same;
    if (to_show_ > 0) {
        --to_show_;
        differences_.same(a_.ahead(0), b_.ahead(0));
    } else if (unshown_ < context_) {
        ++unshown_;
    } else {
        skipped_ = true;
    }
    a_.pass();
    b_.pass();
}

// Looks at more and more of both until there is an end to what is different.
void Comparison::differ() {
    for (std::size_t look = first_look;; look *= 2) {
        const bool more_of_a = a_.has(look);
        const bool more_of_b = b_.has(look);
        const std::size_t n_a = std::min(a_.size(), look);
        const std::size_t n_b = std::min(b_.size(), look);
        const bool reversed = n_b == 0 || (n_a > 0 && b_.ahead(0).meaning < a_.ahead(0).meaning);
        const auto all = steps(n_a, n_b, reversed);
        std::size_t end = all.size();
        if (source_a_.failed() || source_b_.failed()) {
            while (end > 0 && !all[end - 1].both()) --end;
            broken_ = true;
        } else if (more_of_a || more_of_b) {
            std::size_t in_a_row = 0;
            while (end > 0 && in_a_row < together_again) in_a_row = all[--end].same ? in_a_row + 1 : 0;
            if (in_a_row < together_again) continue;
        }
        tell(all, end);
        return;
    }
}

std::vector<Step> Comparison::steps(std::size_t a, std::size_t b, bool reversed) const {
    Numbered numbered;
    std::vector<std::uint32_t> numbers_a(a);
    std::vector<std::uint32_t> numbers_b(b);
    for (std::size_t k = 0; k < a; ++k) numbers_a[k] = numbered(a_.ahead(k).meaning);
    for (std::size_t k = 0; k < b; ++k) numbers_b[k] = numbered(b_.ahead(k).meaning);
    return aligned(std::move(numbers_a), std::move(numbers_b), reversed,
                   [&](std::uint32_t i, std::uint32_t k) { return alike(a_.ahead(i), b_.ahead(k)); });
}

void Comparison::tell(const std::vector<Step>& steps, std::size_t n) {
    for (std::size_t k = 0; k < n && differences_.goes_on(); ++k) {
        const Step& step = steps[k];
        if (step.same) {
            tell_same();
            continue;
        }
        begin_difference();
        if (step.both()) {
            ++compared_.changed;
            differences_.changed(a_.ahead(0), b_.ahead(0), changes(a_.ahead(0), b_.ahead(0)));
        } else if (step.a != Step::nothing) {
            ++compared_.only_in_a;
            differences_.only_in_a(a_.ahead(0));
        } else {
            ++compared_.only_in_b;
            differences_.only_in_b(b_.ahead(0));
        }
        if (step.a != Step::nothing) a_.pass();
        if (step.b != Step::nothing) b_.pass();
    }
}

void Comparison::begin_difference() {
    if (skipped_ && compared_.different()) differences_.gap();
    for (; unshown_ > 0; --unshown_) differences_.same(a_.behind(unshown_), b_.behind(unshown_));
    skipped_ = false;
    to_show_ = context_;
}

}  // namespace ztdecode::tool
