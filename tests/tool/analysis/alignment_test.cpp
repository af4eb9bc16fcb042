#include "tool/analysis/alignment.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

// What of two sequences belongs together: against a plain second opinion where that can be had, and what has
// to hold for any answer where it cannot.

namespace ztdecode::tool {

namespace {

using Numbers = std::vector<std::uint32_t>;

// How many can be the same at most, by the table that everybody knows.
std::size_t longest_common(const Numbers& a, const Numbers& b) {
    std::vector<std::vector<std::size_t>> best(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = a.size(); i-- > 0;) {
        for (std::size_t k = b.size(); k-- > 0;) {
            best[i][k] = a[i] == b[k] ? best[i + 1][k + 1] + 1 : std::max(best[i + 1][k], best[i][k + 1]);
        }
    }
    return best[0][0];
}

std::size_t same(const std::vector<Step>& steps) {
    return static_cast<std::size_t>(
        std::count_if(steps.begin(), steps.end(), [](const Step& s) { return s.same; }));
}

// Every index once and in order, and what is said to be the same is.
void expect_whole(const std::vector<Step>& steps, const Numbers& a, const Numbers& b) {
    std::uint32_t next_a = 0;
    std::uint32_t next_b = 0;
    for (const Step& step : steps) {
        if (step.a != Step::nothing) {
            EXPECT_EQ(step.a, next_a++);
        }
        if (step.b != Step::nothing) {
            EXPECT_EQ(step.b, next_b++);
        }
        EXPECT_TRUE(step.a != Step::nothing || step.b != Step::nothing);
        if (step.same) {
            ASSERT_TRUE(step.both());
            EXPECT_EQ(a[step.a], b[step.b]);
        }
    }
    EXPECT_EQ(next_a, a.size());
    EXPECT_EQ(next_b, b.size());
}

Numbers random_numbers(std::mt19937& random, std::size_t n, std::uint32_t kinds) {
    Numbers numbers(n);
    for (auto& number : numbers) number = static_cast<std::uint32_t>(random() % kinds);
    return numbers;
}

TEST(Alignment, ShortSequencesHaveAsMuchInCommonAsCanBe) {
    std::mt19937 random(1);
    for (std::uint32_t round = 0; round < 2000; ++round) {
        const Numbers a = random_numbers(random, random() % 12, 1 + round % 5);
        const Numbers b = random_numbers(random, random() % 12, 1 + round % 5);
        const auto steps = align(a, b);
        expect_whole(steps, a, b);
        EXPECT_EQ(same(steps), longest_common(a, b));
    }
}

TEST(Alignment, LongOnesAreWhole) {
    std::mt19937 random(2);
    for (const std::uint32_t kinds : {1U, 2U, 10U, 1000U, 4000000000U}) {
        const Numbers a = random_numbers(random, 3000, kinds);
        const Numbers b = random_numbers(random, 5000, kinds);
        expect_whole(align(a, b), a, b);
        expect_whole(align(b, a), b, a);
        expect_whole(align(a, {}), a, {});
        EXPECT_EQ(same(align(a, a)), a.size());
    }
}

TEST(Alignment, WhatWasTakenOutOfALongOneIsAllThatIsLeftAlone) {
    std::mt19937 random(3);
    for (const std::uint32_t kinds : {50U, 4000000000U}) {
        const Numbers a = random_numbers(random, 20000, kinds);
        Numbers b = a;
        b.erase(b.begin() + 15000, b.begin() + 18000);
        b.erase(b.begin() + 4000, b.begin() + 4002);
        const auto steps = align(a, b);
        expect_whole(steps, a, b);
        EXPECT_EQ(same(steps), b.size()) << kinds;
    }
}

TEST(Alignment, WhatIsAlikeComesTogether) {
    const Numbers a = {1, 10, 11, 2};
    const Numbers b = {1, 20, 21, 22, 2};
    auto steps = align(a, b);
    // 10 is like 21, and 11 like 22; 20 is like nothing.
    bring_together(steps, [&](std::uint32_t i, std::uint32_t k) { return a[i] + 11 == b[k] ? 1U : 0U; });
    std::string shown;
    for (const Step& step : steps) {
        shown += step.a == Step::nothing ? "-" : std::to_string(a[step.a]);
        shown += step.same ? "=" : "~";
        shown += step.b == Step::nothing ? "- " : std::to_string(b[step.b]) + " ";
    }
    EXPECT_EQ(shown, "1=1 -~20 10~21 11~22 2=2 ");
}

TEST(Alignment, TheLikestComeTogether) {
    const Numbers a = {1};
    const Numbers b = {2, 3, 4};
    std::vector<Step> steps = align(a, b);
    bring_together(steps, [&](std::uint32_t, std::uint32_t k) { return b[k] == 3 ? 9U : 5U; });
    ASSERT_EQ(steps.size(), 3U);
    EXPECT_EQ(steps[1].a, 0U);
    EXPECT_EQ(steps[1].b, 1U);
}

}  // namespace

}  // namespace ztdecode::tool
