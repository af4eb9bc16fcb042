#include "tool/analysis/comparison.hpp"

#include <algorithm>
#include <map>
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
    std::uint32_t operator()(std::string_view words) { return number(numbers_, words); }
    std::uint32_t operator()(std::string_view one, std::string_view other) {
        return number(pairs_, std::pair((*this)(one), (*this)(other)));
    }

  private:
    template <class Numbers, class Key>
    static std::uint32_t number(Numbers& numbers, const Key& key) {
        return numbers.try_emplace(key, static_cast<std::uint32_t>(numbers.size())).first->second;
    }

    std::unordered_map<std::string_view, std::uint32_t> numbers_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> pairs_;
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

// The same of two messages that one message carries is not the same.
std::vector<std::uint32_t> numbers_of(const std::vector<Term>& terms, Numbered& numbered) {
    std::vector<std::uint32_t> numbers;
    for (const Term& term : terms) numbers.push_back(numbered(term.of, term.whole));
    return numbers;
}

bool same_kind(const Term& a, const Term& b) {
    return a.is == b.is && a.depth == b.depth && a.name == b.name && a.of == b.of;
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
    const auto steps =
        aligned(numbers_of(of_a, numbered), numbers_of(of_b, numbered), b.meaning < a.meaning,
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

// Looks at more and more of both until they meet again, and there is no nearer place to meet.
void Comparison::differ() {
    for (std::size_t look = first_look;; look *= 2) {
        const bool more_of_a = a_.has(look);
        const bool more_of_b = b_.has(look);
        Numbered numbered;
        std::vector<std::uint32_t> a(std::min(a_.size(), look));
        std::vector<std::uint32_t> b(std::min(b_.size(), look));
        for (std::size_t k = 0; k < a.size(); ++k) a[k] = numbered(a_.ahead(k).meaning);
        for (std::size_t k = 0; k < b.size(); ++k) b[k] = numbered(b_.ahead(k).meaning);
        const bool reversed = b.empty() || (!a.empty() && b_.ahead(0).meaning < a_.ahead(0).meaning);
        Step met = reversed ? meeting(b, a, together_again) : meeting(a, b, together_again);
        if (reversed) std::swap(met.a, met.b);
        broken_ = source_a_.failed() || source_b_.failed();
        const bool more = !broken_ && (more_of_a || more_of_b);
        if (more && (!met.both() || met.a + met.b + together_again > look)) continue;
        if (met.both()) {
            a.resize(met.a);
            b.resize(met.b);
        }
        auto told = steps(a, b, reversed);
        while (broken_ && !met.both() && !told.empty() && !told.back().both()) told.pop_back();
        tell(told);
        return;
    }
}

std::vector<Step> Comparison::steps(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b,
                                    bool reversed) const {
    return aligned(a, b, reversed,
                   [&](std::uint32_t i, std::uint32_t k) { return alike(a_.ahead(i), b_.ahead(k)); });
}

void Comparison::tell(const std::vector<Step>& steps) {
    for (const Step& step : steps) {
        if (!differences_.goes_on()) return;
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
