#include "adapters/vcard/ParameterMemory.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory_resource>
#include <string>

namespace dunmora::test {

namespace {

class ParameterMemoryTest : public testing::Test {
protected:
    ParameterMemory& memory() { return memory_; }

private:
    std::pmr::monotonic_buffer_resource resource_;
    ParameterMemory memory_{resource_};
};

}  // namespace

TEST_F(ParameterMemoryTest, KnowsEncodingsAndQuotes)
{
    for (int round = 0; round < 2; ++round) {
        const auto plain = memory().meaning(";type=HOME");
        EXPECT_EQ(plain.encoding.transfer, TransferEncoding::Plain);
        EXPECT_EQ(plain.encoding.charset, "");
        EXPECT_FALSE(plain.hasQuotes);

        const auto quoted = memory().meaning(";CHARSET=\"cp437\";QUOTED-PRINTABLE");
        EXPECT_EQ(quoted.encoding.transfer, TransferEncoding::QuotedPrintable);
        EXPECT_EQ(quoted.encoding.charset, "cp437");
        EXPECT_TRUE(quoted.hasQuotes);

        EXPECT_EQ(memory().meaning(";ENCODING=b").encoding.transfer, TransferEncoding::Base64);
    }
}

TEST_F(ParameterMemoryTest, KnowsTheLabelsOfNumbers)
{
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(memory().phoneLabel(";type=HOME;type=VOICE"), "_$!<Home>!$_");
        EXPECT_EQ(memory().phoneLabel(";CELL"), "_$!<Mobile>!$_");
        EXPECT_EQ(memory().phoneLabel(";type=X-Boat"), "Boat");
        EXPECT_EQ(memory().phoneLabel(";type=VOICE"), std::nullopt);
        EXPECT_EQ(memory().phoneLabel(";type=K\xFChl"), "K\u00FChl");
    }
}

TEST_F(ParameterMemoryTest, WorksOutAListOnce)
{
    const std::string first = ";type=Boat";
    const std::string second = ";type=Boat";

    const auto label = memory().phoneLabel(first);

    EXPECT_EQ(memory().phoneLabel(second)->data(), label->data());
}

TEST_F(ParameterMemoryTest, KeepsListsApartThatDifferInOneByte)
{
    const std::string base = ";type=0123456789abcdefghij";
    std::deque<std::string> lists;
    for (std::size_t i = 6; i < base.size(); ++i) {
        lists.push_back(base);
        lists.back()[i] = 'X';
    }

    for (int round = 0; round < 2; ++round) {
        for (const auto& list : lists) {
            EXPECT_EQ(memory().phoneLabel(list), std::string_view(list).substr(6));
        }
    }
}

TEST_F(ParameterMemoryTest, ReplacesListsWhenThereAreMoreThanItHasPlacesFor)
{
    std::deque<std::string> types;
    std::deque<std::string> charsets;
    for (int i = 0; i < 2000; ++i) {
        types.push_back(";type=Boat" + std::to_string(i));
        charsets.push_back(";charset=" + std::to_string(i));
    }

    for (std::size_t i = 0; i < types.size(); ++i) {
        ASSERT_EQ(memory().phoneLabel(types[i]), std::string_view(types[i]).substr(6));
        ASSERT_EQ(memory().phoneLabel(charsets[i]), std::nullopt);
        ASSERT_EQ(memory().meaning(charsets[i]).encoding.charset, std::to_string(i));
        ASSERT_EQ(memory().phoneLabel(types.front()), "Boat0");
    }
}

}  // namespace dunmora::test
