#include "adapters/vcard/VCardAddressBook.h"
#include "tests/oracle/RealCards.h"
#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace dunmora::test {

namespace {

using Texts = std::vector<std::string>;

Texts numbersOf(const Person& person)
{
    Texts numbers;
    for (const auto& phone : person.phones.value_or(PhoneList())) {
        numbers.emplace_back(phone.value);
    }
    return numbers;
}

/// The first component of every property with this name.
Texts valuesOf(const PersonCard& card, std::string_view name)
{
    Texts values;
    for (const auto& property : card.properties) {
        if (property.name == name && !property.components.empty()) {
            values.push_back(property.components.front());
        }
    }
    return values;
}

bool isUtf8Throughout(const CardProperty& property)
{
    return isUtf8(property.name) && isUtf8(property.label) &&
           std::all_of(property.components.begin(), property.components.end(),
                       [](const std::string& text) { return isUtf8(text); });
}

/// Whether the value is still encoded although the standard allows only bytes there.
bool isUndecodedPhoto(const CardProperty& property)
{
    constexpr std::size_t kLongerThanAnyAddress = 2000;
    return (property.name == "PHOTO" || property.name == "LOGO") && !property.binary &&
           property.components.front().size() > kLongerThanAnyAddress;
}

}  // namespace

TEST(WholeCards, AreThoseOfTheListedPeople)
{
    if (!std::filesystem::is_directory(realCardFolder())) {
        GTEST_SKIP() << "There are no real cards in " << realCardFolder()
                     << "; name another folder in DUNMORA_VCARDS.";
    }
    for (const auto& file : realCardFiles()) {
        SCOPED_TRACE(nameOf(file));
        VCardAddressBook book(file);
        for (const auto& person : book.readPeople()) {
            const auto card = book.card(person.uid);
            ASSERT_TRUE(card) << person.uid;
            EXPECT_EQ(valuesOf(*card, "TEL"), numbersOf(person));
            const auto names = valuesOf(*card, "N");
            if (person.lastName) {
                ASSERT_FALSE(names.empty());
                EXPECT_EQ(names.front(), *person.lastName);
            }
            EXPECT_EQ(card->source.address, file.string());
            for (const auto& property : card->properties) {
                EXPECT_TRUE(isUtf8Throughout(property)) << property.name;
                EXPECT_FALSE(isUndecodedPhoto(property));
                EXPECT_NE(property.name, "BEGIN");
                EXPECT_NE(property.name, "X-ABLABEL");
            }
        }
    }
}

}  // namespace dunmora::test
