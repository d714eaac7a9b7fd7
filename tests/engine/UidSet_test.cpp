#include "engine/UidSet.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

bool contains(const UidSet& set, std::string_view uid)
{
    return set.contains(uid, TextIndex::hashOf(uid));
}

TEST(UidSet, ContainsTheUidsOfItsList)
{
    const std::vector<std::string> uids = {"1", "2", "1", ""};
    const UidSet set(uids);

    EXPECT_TRUE(contains(set, "1"));
    EXPECT_TRUE(contains(set, "2"));
    EXPECT_TRUE(contains(set, ""));
    EXPECT_FALSE(contains(set, "3"));
}

TEST(UidSet, ContainsNothingWhenTheListIsEmpty)
{
    const std::vector<std::string> uids;

    EXPECT_FALSE(contains(UidSet(uids), "1"));
}

}  // namespace
}  // namespace dunmora::test
