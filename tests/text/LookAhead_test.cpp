#include "text/LookAhead.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace dunmora::test {
namespace {

class LookAhead : public ::testing::TestWithParam<std::size_t> {
protected:
    /// Visits `count` items and records both orders.
    void visit(std::size_t count)
    {
        visitWithLookAhead<std::size_t>(
            count,
            [&](std::size_t item, std::size_t& prepared) {
                prepared = 1000 + item;
                prepared_.push_back(item);
            },
            [&](std::size_t item, const std::size_t& prepared) {
                EXPECT_EQ(prepared, 1000 + item);
                preparedAtVisit_.push_back(prepared_.size());
                visited_.push_back(item);
            });
    }

    std::vector<std::size_t> prepared_;
    std::vector<std::size_t> visited_;
    // By visit: how many items had been prepared.
    std::vector<std::size_t> preparedAtVisit_;
};

TEST_P(LookAhead, PreparesAndVisitsEveryItemOnceAndInOrder)
{
    std::vector<std::size_t> all(GetParam());
    std::iota(all.begin(), all.end(), std::size_t{0});

    visit(GetParam());

    EXPECT_EQ(prepared_, all);
    EXPECT_EQ(visited_, all);
}

INSTANTIATE_TEST_SUITE_P(OfAnyCount, LookAhead,
                         ::testing::Values(0, 1, kLookAhead - 1, kLookAhead, kLookAhead + 1, 100));

TEST_F(LookAhead, PreparesAnItemSomeItemsBeforeItsVisit)
{
    visit(100);

    ASSERT_EQ(preparedAtVisit_.size(), 100U);
    EXPECT_EQ(preparedAtVisit_[0], kLookAhead);
    EXPECT_EQ(preparedAtVisit_[50], 50 + kLookAhead);
    EXPECT_EQ(preparedAtVisit_[99], 100U);
}

TEST_F(LookAhead, EndsWithTheErrorOfAVisit)
{
    std::size_t visits = 0;
    const auto fail = [&](std::size_t item, int /*prepared*/) {
        ++visits;
        if (item == 3) {
            throw std::runtime_error("no more");
        }
    };

    EXPECT_THROW(visitWithLookAhead<int>(
                     100, [](std::size_t /*item*/, int& /*prepared*/) {}, fail),
                 std::runtime_error);
    EXPECT_EQ(visits, 4U);
}

}  // namespace
}  // namespace dunmora::test
