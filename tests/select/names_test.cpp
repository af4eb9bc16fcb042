#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "decode/catalog.hpp"
#include "tool/select/names.hpp"

// The names that a selection knows.

namespace ztdecode::tool {

namespace {

using ::testing::ElementsAreArray;

TEST(Names, AreTheCataloguesAndThoseOfCodesThatNoTableKnows) {
    // Types that are digital sets by another name, and notifications without a row.
    std::set<std::string> links = {"type13", "type14"};
    std::set<std::string> messages = {"notify"};
    for (const CatalogRow& row : catalog()) {
        links.emplace(row.link);
        messages.emplace(row.message);
    }
    messages.erase("");
    EXPECT_THAT(link_names(), ElementsAreArray(links));
    EXPECT_THAT(message_names(), ElementsAreArray(messages));
}

TEST(Names, TheNearest) {
    EXPECT_EQ(did_you_mean("strt_rtp", message_names()), " (did you mean start_rtp?)");
    EXPECT_EQ(did_you_mean("pi", link_names()), " (did you mean ip?)");
    EXPECT_EQ(did_you_mean("digitla", link_names()), " (did you mean digital?)");
    EXPECT_EQ(did_you_mean("IP", link_names()), "");
    EXPECT_EQ(did_you_mean("", link_names()), "");
    EXPECT_EQ(did_you_mean("nothing_like_it", link_names()), "");
    EXPECT_EQ(did_you_mean(std::string(1000000, 'a'), link_names()), "");
}

}  // namespace

}  // namespace ztdecode::tool
