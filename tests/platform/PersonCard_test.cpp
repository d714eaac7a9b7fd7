#include "platform/PersonCard.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace dunmora {

namespace {

CardProperty photo(std::string bytes)
{
    return {"PHOTO", {}, {}, CardProperty::Binary{"image/png", std::move(bytes)}};
}

}  // namespace

TEST(CardProperty, HasABinaryValueOfItsOwnAfterACopy)
{
    const auto original = photo("abc");

    auto copy = original;
    EXPECT_EQ(copy, original);
    copy.binary->bytes = "abd";

    EXPECT_NE(copy, original);
    EXPECT_EQ(original.binary->bytes, "abc");
}

TEST(CardProperty, TakesTheBinaryValueOfAnother)
{
    auto property = photo("abc");
    const CardProperty none{"PHOTO", {}, {}, {}};

    property = photo("abd");
    EXPECT_EQ(property, photo("abd"));
    property.binary = std::optional(CardProperty::Binary{"image/png", "abe"});
    EXPECT_EQ(property, photo("abe"));
    property = none;
    EXPECT_FALSE(property.binary.has_value());
    property.binary = std::optional<CardProperty::Binary>();
    EXPECT_EQ(property, none);
}

TEST(CardProperty, ComparesBinaryValuesByTheirContent)
{
    const CardProperty none{"PHOTO", {}, {}, {}};

    EXPECT_EQ(photo("abc"), photo("abc"));
    EXPECT_NE(photo("abc"), photo("abd"));
    EXPECT_NE(photo("abc"), none);
    EXPECT_NE(none, photo("abc"));
    EXPECT_EQ(none, none);
}

}  // namespace dunmora
