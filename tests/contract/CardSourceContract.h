#pragma once

#include "platform/AddressBook.h"
#include "platform/CardSource.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/FakeCard.h"
#include "text/SideBySide.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace dunmora::test {

/// What every CardSource must do. Instantiate it with a type that has this member besides those of
/// AddressBookContract:
///
///     CardSource& cardSource();
template <typename BookUnderTest>
class CardSourceContract : public testing::Test {
protected:
    void SetUp() override
    {
        if constexpr (requires { BookUnderTest::whyNot(""); }) {
            const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
            if (const auto reason = BookUnderTest::whyNot(test->name())) {
                GTEST_SKIP() << *reason;
            }
        }
    }

    using Pointers = std::vector<const Person*>;

    AddressBook& book() { return underTest_.book(); }
    BookUnderTest& underTest() { return underTest_; }
    std::string cards(const Pointers& people) { return underTest_.cardSource().cards(people); }

    std::optional<PersonCard> card(std::string_view uid)
    {
        return underTest_.cardSource().card(uid);
    }

    /// Whether the person's card holds these properties, in this order, perhaps among others.
    testing::AssertionResult cardHolds(std::string_view uid,
                                       const std::vector<CardProperty>& properties)
    {
        const auto whole = card(uid);
        if (!whole) {
            return testing::AssertionFailure() << "there is no card of " << uid;
        }
        auto rest = whole->properties.begin();
        for (const auto& property : properties) {
            rest = std::find(rest, whole->properties.end(), property);
            if (rest == whole->properties.end()) {
                return testing::AssertionFailure() << property.name << " is missing";
            }
        }
        return testing::AssertionSuccess();
    }

    static FakePerson person(const std::string& uid, const std::string& firstName)
    {
        FakePerson person;
        person.uid = uid;
        person.firstName = firstName;
        person.nickname.reset();
        person.phones.reset();
        return person;
    }

    std::span<const Person> annBenAndCarol()
    {
        underTest_.hold({person("a", "Ann"), person("b", "Ben"), person("c", "Carol")});
        return book().readPeople();
    }

private:
    BookUnderTest underTest_;
};

TYPED_TEST_SUITE_P(CardSourceContract);

TYPED_TEST_P(CardSourceContract, ReturnsTheCardsInTheRequestedOrder)
{
    const auto people = this->annBenAndCarol();

    const auto cards = this->cards({&people[2], &people[0]});

    EXPECT_TRUE(cards.starts_with("BEGIN:VCARD")) << cards;
    EXPECT_LT(cards.find("Carol"), cards.find("Ann")) << cards;
    EXPECT_NE(cards.find("Ann"), std::string::npos) << cards;
    EXPECT_EQ(cards.find("Ben"), std::string::npos) << cards;
}

TYPED_TEST_P(CardSourceContract, EndsEachCardWithALineEnd)
{
    const auto people = this->annBenAndCarol();

    const auto ann = this->cards({people.data()});

    EXPECT_TRUE(ann.ends_with("END:VCARD\r\n") || ann.ends_with("END:VCARD\n")) << ann;
    EXPECT_EQ(this->cards({&people[0], &people[1]}), ann + this->cards({&people[1]}));
}

TYPED_TEST_P(CardSourceContract, ReturnsAnEmptyTextForNobody)
{
    this->annBenAndCarol();

    EXPECT_EQ(this->cards({}), "");
}

TYPED_TEST_P(CardSourceContract, RefusesSomebodyWhoIsNotInTheLastListing)
{
    const Person stranger{"a", {}, {}, {}, {}, {}};
    this->underTest().hold({this->person("a", "Ann")});
    EXPECT_THROW(this->cards({&stranger}), PlatformError);

    this->book().readPeople();

    EXPECT_THROW(this->cards({&stranger}), PlatformError);
}

TYPED_TEST_P(CardSourceContract, ChangesNothing)
{
    const auto people = this->annBenAndCarol();
    const auto before = this->underTest().trace();
    this->book().removeRecord(people[1]);

    this->cards({&people[0], &people[1]});

    EXPECT_EQ(this->underTest().trace(), before);
    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "c"}));
}

TYPED_TEST_P(CardSourceContract, ReturnsThePropertiesOfAPerson)
{
    this->underTest().hold({FakePerson()});
    this->book().readPeople();

    const auto card = this->card("uid-ann");

    ASSERT_TRUE(card);
    std::vector<std::string> phones;
    for (const auto& property : card->properties) {
        if (property.name == "TEL") {
            ASSERT_EQ(property.components.size(), 1U);
            phones.push_back(property.components.front());
        } else if (property.name == "N") {
            ASSERT_GE(property.components.size(), 2U);
            EXPECT_EQ(property.components[0], "Lee");
            EXPECT_EQ(property.components[1], "Ann");
        }
    }
    EXPECT_EQ(phones, (std::vector<std::string>{"555-0100", "555-0101", "555-0102"}));
}

TYPED_TEST_P(CardSourceContract, ReturnsWhatIsNoContactField)
{
    auto ann = this->person("a", "Ann");
    ann.properties = {textProperty("NICKNAME", "Annie"),
                      textProperty("EMAIL", "ann@example.org", "club; choir"),
                      textProperty("NOTE", "two\nlines, and a \\"),
                      {"ADR", {}, {"", "", "1 High Street, back", "Oban; Argyll", "", "", ""}, {}}};
    this->underTest().hold({this->person("b", "Ben"), ann});

    this->book().readPeople();

    EXPECT_TRUE(this->cardHolds("a", ann.properties));
    EXPECT_FALSE(this->cardHolds("b", {ann.properties.front()}));
}

TYPED_TEST_P(CardSourceContract, ReturnsAPhotoAsItsBytes)
{
    auto ann = this->person("a", "Ann");
    ann.properties = {
        {"PHOTO", {}, {}, CardProperty::Binary{"image/jpeg", std::string("\xFF\xD8\xFF\0x", 5)}}};
    this->underTest().hold({ann});

    this->book().readPeople();

    EXPECT_TRUE(this->cardHolds("a", ann.properties));
}

TYPED_TEST_P(CardSourceContract, NamesTheListsOfAPerson)
{
    auto ann = this->person("a", "Ann");
    ann.lists = {"Choir", "Rowing, Mondays"};
    this->underTest().hold({ann, this->person("b", "Ben")});

    this->book().readPeople();

    EXPECT_EQ(this->card("a").value().lists, ann.lists);
    EXPECT_EQ(this->card("b").value().lists, std::vector<std::string>());
}

TYPED_TEST_P(CardSourceContract, NamesTheBookOfAPerson)
{
    const auto people = this->annBenAndCarol();

    for (const auto& person : people) {
        ASSERT_NE(person.source, nullptr);
        EXPECT_NE(person.source->address, "");
        EXPECT_NE(person.source->name, "");
        EXPECT_EQ(this->card(person.uid).value().source, *person.source);
    }
}

TYPED_TEST_P(CardSourceContract, ReturnsNoCardOfAStranger)
{
    this->underTest().hold({this->person("a", "Ann")});
    EXPECT_FALSE(this->card("a"));

    this->book().readPeople();

    EXPECT_TRUE(this->card("a"));
    EXPECT_FALSE(this->card("b"));
    EXPECT_FALSE(this->card(""));
}

TYPED_TEST_P(CardSourceContract, KeepsTheCardsOfTheReadingAcrossADeletion)
{
    this->annBenAndCarol();
    const auto before = this->card("b").value();

    this->book().removeRecord(this->book().people()[1]);
    this->book().save();
    this->book().people();

    ASSERT_TRUE(this->card("b"));
    EXPECT_EQ(this->card("b")->properties, before.properties);
    EXPECT_TRUE(this->card("a"));
    EXPECT_TRUE(this->card("c"));
    this->book().readPeople();
    EXPECT_FALSE(this->card("b"));
    EXPECT_TRUE(this->card("c"));
}

TYPED_TEST_P(CardSourceContract, ComparesCardsOnSeveralThreadsAtOnce)
{
    constexpr std::size_t kPeople = 60;
    std::vector<FakePerson> people;
    for (std::size_t i = 0; i < kPeople; ++i) {
        people.push_back(this->person(std::to_string(i), "Ann"));
        people.back().properties = {textProperty("NOTE", std::to_string(i % 3))};
    }
    this->underTest().hold(people);
    std::vector<std::string> uids;
    for (const auto& person : this->book().readPeople()) {
        uids.emplace_back(person.uid);
    }
    ASSERT_EQ(uids.size(), kPeople);
    const auto& source = this->underTest().cardSource();
    const std::vector<std::string> names{"NOTE", "N"};
    const auto compare = [&](std::size_t i) {
        CardDifferences differences;
        const auto isComparable = source.compareStored(std::span(uids).subspan(i, 2), differences);
        return std::tuple(isComparable,
                          isComparable ? differences.names : std::vector<std::string>(),
                          source.propertiesNamed(uids[i], names));
    };
    std::vector<decltype(compare(0))> expected;
    for (std::size_t i = 0; i + 1 < kPeople; ++i) {
        expected.push_back(compare(i));
    }
    auto compared = expected;
    for (auto& one : compared) {
        one = {};
    }

    runSideBySide(expected.size(), 4, [&](std::size_t i) { compared[i] = compare(i); });

    EXPECT_EQ(compared, expected);
}

REGISTER_TYPED_TEST_SUITE_P(CardSourceContract, ReturnsTheCardsInTheRequestedOrder,
                            EndsEachCardWithALineEnd, ReturnsAnEmptyTextForNobody,
                            RefusesSomebodyWhoIsNotInTheLastListing, ChangesNothing,
                            ReturnsThePropertiesOfAPerson, ReturnsWhatIsNoContactField,
                            ReturnsAPhotoAsItsBytes, NamesTheListsOfAPerson, NamesTheBookOfAPerson,
                            ReturnsNoCardOfAStranger, KeepsTheCardsOfTheReadingAcrossADeletion,
                            ComparesCardsOnSeveralThreadsAtOnce);

}  // namespace dunmora::test
