#pragma once

#include "platform/AddressBook.h"
#include "platform/CardSource.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakeAddressBook.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
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

REGISTER_TYPED_TEST_SUITE_P(CardSourceContract, ReturnsTheCardsInTheRequestedOrder,
                            EndsEachCardWithALineEnd, ReturnsAnEmptyTextForNobody,
                            RefusesSomebodyWhoIsNotInTheLastListing, ChangesNothing);

}  // namespace dunmora::test
