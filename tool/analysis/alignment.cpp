#include "tool/analysis/alignment.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <dtl/dtl.hpp>
#include <unordered_map>

namespace ztdecode::tool {

namespace {

using Numbers = std::span<const std::uint32_t>;

// What is compared exactly may take time and memory as the product of its lengths: of short stretches at
// once, of longer ones where there is no other way, of all others piece by piece.
constexpr std::size_t most_at_once = 512;
constexpr std::size_t most_exactly = 4096;
// The same of what is brought together.
constexpr std::size_t most_together = 64;

std::uint64_t mixed(Numbers all, std::size_t first, std::size_t length) {
    std::uint64_t mix = 0;
    for (std::size_t k = first; k < first + length; ++k) {
        mix = (mix ^ all[k]) * 0x9E3779B97F4A7C15;
        mix ^= mix >> 29;
    }
    return mix;
}

class Aligner {
  public:
    Aligner(Numbers a, Numbers b) : a_(a), b_(b) {}

    std::vector<Step> run() {
        between(0, a_.size(), 0, b_.size(), 0);
        return std::move(steps_);
    }

  private:
    void same(std::size_t a, std::size_t b) {
        steps_.push_back({static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b), true});
    }
    void only_a(std::size_t first, std::size_t last) {
        for (; first < last; ++first) steps_.push_back({.a = static_cast<std::uint32_t>(first)});
    }
    void only_b(std::size_t first, std::size_t last) {
        for (; first < last; ++first) steps_.push_back({.b = static_cast<std::uint32_t>(first)});
    }

    // From the first to before the last of both. `run`: which anchors are next to be looked for.
    void between(std::size_t a, std::size_t a_end, std::size_t b, std::size_t b_end, std::size_t run) {
        for (; a < a_end && b < b_end && a_[a] == b_[b]; ++a, ++b) same(a, b);
        std::size_t behind = 0;
        while (a < a_end && b < b_end && a_[a_end - 1] == b_[b_end - 1]) --a_end, --b_end, ++behind;
        if (a == a_end || b == b_end) {
            only_a(a, a_end);
            only_b(b, b_end);
        } else if (std::max(a_end - a, b_end - b) <= most_at_once) {
            exactly(a, a_end, b, b_end);
        } else {
            by_anchors(a, a_end, b, b_end, run);
        }
        for (std::size_t k = 0; k < behind; ++k) same(a_end + k, b_end + k);
    }

    void exactly(std::size_t a, std::size_t a_end, std::size_t b, std::size_t b_end) {
        using Sequence = std::vector<std::uint32_t>;
        const auto from = [](Numbers all, std::size_t first, std::size_t last) {
            return Sequence(all.begin() + static_cast<std::ptrdiff_t>(first),
                            all.begin() + static_cast<std::ptrdiff_t>(last));
        };
        dtl::Diff<std::uint32_t, Sequence> diff(from(a_, a, a_end), from(b_, b, b_end));
        diff.compose();
        for (const auto& element : diff.getSes().getSequence()) {
            switch (element.second.type) {
                case dtl::SES_COMMON:
                    same(a++, b++);
                    break;
                case dtl::SES_DELETE:
                    only_a(a, a + 1);
                    ++a;
                    break;
                default:
                    only_b(b, b + 1);
                    ++b;
                    break;
            }
        }
    }

    struct Anchor {
        std::size_t a;
        std::size_t b;
    };

    // A run of numbers that stands once in the one and once in the other belongs together, where that crosses
    // nothing.
    void by_anchors(std::size_t a, std::size_t a_end, std::size_t b, std::size_t b_end, std::size_t run) {
        constexpr auto runs = std::to_array<std::size_t>({1, 4, 1, 16, 64});
        for (; run < runs.size(); ++run) {
            const auto anchors = in_order(unique(a, a_end, b, b_end, runs[run]));
            if (anchors.empty()) continue;
            for (const Anchor& anchor : anchors) {
                if (anchor.a < a || anchor.b < b) continue;  // inside the run of the last one
                between(a, anchor.a, b, anchor.b, run + 1);
                a = anchor.a;
                b = anchor.b;
                for (std::size_t k = 0; k < runs[run]; ++k) same(a++, b++);
            }
            between(a, a_end, b, b_end, run + 1);
            return;
        }
        if (std::max(a_end - a, b_end - b) <= most_exactly) {
            exactly(a, a_end, b, b_end);
        } else {
            in_pieces(a, a_end, b, b_end);
        }
    }

    void in_pieces(std::size_t a, std::size_t a_end, std::size_t b, std::size_t b_end) {
        const std::size_t pieces = std::max(a_end - a, b_end - b) / most_at_once + 1;
        const std::size_t of_a = a_end - a;
        const std::size_t of_b = b_end - b;
        for (std::size_t k = 0; k < pieces; ++k) {
            between(a + of_a * k / pieces, a + of_a * (k + 1) / pieces, b + of_b * k / pieces,
                    b + of_b * (k + 1) / pieces, 0);
        }
    }

    struct Found {
        std::size_t a = 0;
        std::size_t b = 0;
        std::uint32_t in_a = 0;
        std::uint32_t in_b = 0;
    };

    std::vector<Anchor> unique(std::size_t a, std::size_t a_end, std::size_t b, std::size_t b_end,
                               std::size_t length) const {
        std::unordered_map<std::uint64_t, Found> found;
        if (a_end - a < length || b_end - b < length) return {};
        for (std::size_t k = a; k + length <= a_end; ++k) {
            Found& f = found[mixed(a_, k, length)];
            f.a = k;
            ++f.in_a;
        }
        for (std::size_t k = b; k + length <= b_end; ++k) {
            const auto f = found.find(mixed(b_, k, length));
            if (f == found.end()) continue;
            f->second.b = k;
            ++f->second.in_b;
        }
        std::vector<Anchor> anchors;
        for (const auto& [number, f] : found) {
            if (f.in_a != 1 || f.in_b != 1) continue;
            if (std::equal(a_.begin() + static_cast<std::ptrdiff_t>(f.a),
                           a_.begin() + static_cast<std::ptrdiff_t>(f.a + length),
                           b_.begin() + static_cast<std::ptrdiff_t>(f.b)))
                anchors.push_back({f.a, f.b});
        }
        std::sort(anchors.begin(), anchors.end(), [](const Anchor& x, const Anchor& y) { return x.a < y.a; });
        return anchors;
    }

    // As many of them as can be in the order of both: the longest rising sequence.
    static std::vector<Anchor> in_order(const std::vector<Anchor>& anchors) {
        constexpr std::size_t none = static_cast<std::size_t>(-1);
        std::vector<std::size_t> ends;  // of the sequences of each length the one that ends first
        std::vector<std::size_t> before(anchors.size(), none);
        for (std::size_t k = 0; k < anchors.size(); ++k) {
            const auto place =
                std::lower_bound(ends.begin(), ends.end(), anchors[k].b,
                                 [&](std::size_t end, std::size_t b) { return anchors[end].b < b; });
            if (place != ends.begin()) before[k] = *(place - 1);
            if (place == ends.end()) {
                ends.push_back(k);
            } else {
                *place = k;
            }
        }
        std::vector<Anchor> rising;
        for (std::size_t k = ends.empty() ? none : ends.back(); k != none; k = before[k])
            rising.push_back(anchors[k]);
        std::reverse(rising.begin(), rising.end());
        return rising;
    }

    Numbers a_;
    Numbers b_;
    std::vector<Step> steps_;
};

// Of the things a and b as much likeness as can be, in their order; in front of each other what is left
// alone.
class Together {
  public:
    Together(Numbers a, Numbers b, const Likeness& likeness) : a_(a), b_(b), width_(b.size() + 1) {
        alike_.resize((a.size() + 1) * width_);
        best_.resize(alike_.size());
        for (std::size_t i = a.size(); i-- > 0;) {
            for (std::size_t k = b.size(); k-- > 0;) {
                const std::uint32_t alike = likeness(a[i], b[k]);
                alike_[at(i, k)] = alike;
                best_[at(i, k)] = std::max({best_[at(i + 1, k)], best_[at(i, k + 1)],
                                            alike == 0 ? 0 : alike + best_[at(i + 1, k + 1)]});
            }
        }
    }

    void add_to(std::vector<Step>& steps) const {
        std::size_t i = 0;
        std::size_t k = 0;
        while (i < a_.size() && k < b_.size()) {
            const std::uint64_t best = best_[at(i, k)];
            if (alike_[at(i, k)] != 0 && best == alike_[at(i, k)] + best_[at(i + 1, k + 1)]) {
                steps.push_back({a_[i++], b_[k++], false});
            } else if (best == best_[at(i + 1, k)]) {
                steps.push_back({.a = a_[i++]});
            } else {
                steps.push_back({.b = b_[k++]});
            }
        }
        while (i < a_.size()) steps.push_back({.a = a_[i++]});
        while (k < b_.size()) steps.push_back({.b = b_[k++]});
    }

  private:
    std::size_t at(std::size_t i, std::size_t k) const { return i * width_ + k; }

    Numbers a_;
    Numbers b_;
    std::size_t width_;
    std::vector<std::uint32_t> alike_;
    std::vector<std::uint64_t> best_;
};

}  // namespace

std::vector<Step> align(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b) {
    return Aligner(a, b).run();
}

Step meeting(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b, std::size_t run) {
    if (a.size() < run || b.size() < run) return {};
    std::unordered_map<std::uint64_t, std::size_t> first;
    for (std::size_t k = 0; k + run <= a.size(); ++k) first.try_emplace(mixed(a, k, run), k);
    Step nearest;
    std::size_t least = a.size() + b.size();
    for (std::size_t k = 0; k + run <= b.size() && k < least; ++k) {
        const auto found = first.find(mixed(b, k, run));
        if (found == first.end() || found->second + k >= least) continue;
        if (!std::ranges::equal(a.subspan(found->second, run), b.subspan(k, run))) continue;
        least = found->second + k;
        nearest = {static_cast<std::uint32_t>(found->second), static_cast<std::uint32_t>(k), true};
    }
    return nearest;
}

void bring_together(std::vector<Step>& steps, const Likeness& likeness) {
    std::vector<Step> result;
    std::vector<std::uint32_t> a;
    std::vector<std::uint32_t> b;
    const auto settle = [&] {
        const std::size_t pieces = std::max(a.size(), b.size()) / most_together + 1;
        for (std::size_t k = 0; k < pieces; ++k) {
            const auto piece = [&](const std::vector<std::uint32_t>& all) {
                const std::size_t first = all.size() * k / pieces;
                return Numbers(all).subspan(first, all.size() * (k + 1) / pieces - first);
            };
            Together(piece(a), piece(b), likeness).add_to(result);
        }
        a.clear();
        b.clear();
    };
    for (const Step& step : steps) {
        if (step.same) {
            settle();
            result.push_back(step);
        } else {
            if (step.a != Step::nothing) a.push_back(step.a);
            if (step.b != Step::nothing) b.push_back(step.b);
        }
    }
    settle();
    steps = std::move(result);
}

}  // namespace ztdecode::tool
