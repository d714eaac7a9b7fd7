#include "review/UniqueProperties.h"

#include "engine/ContactsParser.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"
#include "tests/review/Cards.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

/// A book that cannot be reached.
class LostBook final : public CardSource {
public:
    std::string cards(std::span<const Person* const> /*people*/) const override { return {}; }
    std::optional<PersonCard> card(std::string_view /*uid*/) const override
    {
        throw PlatformError("The server does not respond.");
    }
};

class UniquePropertiesTest : public testing::Test {
protected:
    /// Rows in one group, all of them checked but the first.
    void reviewShows(std::vector<PersonCard> cards)
    {
        std::vector<FakePerson> people;
        for (auto& card : cards) {
            const auto uid = std::to_string(people.size());
            people.push_back(people.empty() ? withMobile(named(uid, firstName_))
                                            : named(uid, firstName_));
            people.back().lastName = lastName_;
            cards_.byUid[uid] = std::move(card);
        }
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        unique_.read(engine_, &cards_);
    }

    void check(std::size_t row, bool on)
    {
        engine_.contacts().find(engine_.duplicates()[row])->setObject(on, kContactCheck);
        const std::vector rows{row};
        unique_.rowsEdited(engine_, rows);
    }

    std::vector<std::string> namesOnlyHere(std::size_t row) const
    {
        std::vector<std::string> names;
        for (const auto& only : unique_.onlyHere(row)) {
            names.push_back(only.property + "=" + only.value);
        }
        return names;
    }

    using Names = std::vector<std::string>;

    std::string firstName_ = "Ann";
    std::string lastName_ = "Lee";
    FakePlatform platform_;
    FakeCards cards_;
    ContactsParser engine_;
    UniqueProperties unique_;
};

TEST_F(UniquePropertiesTest, AreInCheckedCopiesThatHoldSomethingNoKeptCopyHas)
{
    reviewShows({card({text("EMAIL", "ann@example.org"), text("NOTE", "a")}),
                 card({text("EMAIL", "ann@EXAMPLE.org")}), card({text("URL", "http://a.org")})});

    EXPECT_FALSE(unique_.has(0));
    EXPECT_FALSE(unique_.has(1));
    EXPECT_TRUE(unique_.has(2));
    EXPECT_FALSE(unique_.has(3));
    EXPECT_EQ(unique_.count(), 1U);
    EXPECT_EQ(namesOnlyHere(2), Names{"URL=http://a.org"});
    EXPECT_EQ(namesOnlyHere(1), Names{});
    EXPECT_EQ(namesOnlyHere(0), Names{});
}

TEST_F(UniquePropertiesTest, FollowTheMarks)
{
    reviewShows({card({text("NOTE", "a")}), card({text("NOTE", "b")})});

    check(1, false);
    EXPECT_EQ(unique_.count(), 0U);

    check(0, true);
    EXPECT_TRUE(unique_.has(0));
    EXPECT_FALSE(unique_.has(1));

    check(1, true);
    EXPECT_EQ(unique_.count(), 2U);
}

TEST_F(UniquePropertiesTest, AreNamedInOneSentence)
{
    reviewShows({card({}), card({text("EMAIL", "ann@example.org"), text("NOTE", "long"),
                                 binary("PHOTO", "abc"), text("X-A", std::string(200, 'x')),
                                 structured("ADR", {"", "", "1 Main St", "Rome"}, "HOME")},
                                {"Choir"})});

    EXPECT_EQ(unique_.text(1), "Only here: e-mail ann@example.org, note, photo, X-A " +
                                   std::string(60, 'x') +
                                   "…, address 1 Main St, Rome, in the list “Choir”.");
    EXPECT_EQ(unique_.text(0), "");
    EXPECT_EQ(unique_.text(2), "");
}

TEST_F(UniquePropertiesTest, AreNamedInATextThatIsSafeToDisplay)
{
    reviewShows(
        {card({}), card({text("EMAIL", "a\n\u202E@b"), text("X-\x1b[2J", "\xFF")}, {"a\nb"})});

    EXPECT_EQ(unique_.text(1), "Only here: e-mail a @b, X-�[2J �, in the list “a b”.");
}

TEST_F(UniquePropertiesTest, AreNamedWithoutReadingTheCardAgainAndAgain)
{
    reviewShows({card({}), card({text("EMAIL", "a@b.org")})});
    const auto text = unique_.text(1);
    const auto before = cards_.readings;

    EXPECT_EQ(unique_.text(1), text);
    EXPECT_EQ(cards_.readings, before);

    check(0, true);
    check(0, false);
    cards_.byUid.erase("1");
    EXPECT_NE(unique_.text(1), text);
}

TEST_F(UniquePropertiesTest, AreSupposedInACardThatCannotBeRead)
{
    reviewShows({card({}), card({}), card({})});
    cards_.byUid.erase("1");
    unique_.read(engine_, &cards_);

    EXPECT_TRUE(unique_.has(1));
    EXPECT_FALSE(unique_.has(2));
    EXPECT_EQ(unique_.text(1),
              "This copy’s card could not be read. It may hold something that is only here.");
    EXPECT_EQ(unique_.cardHash(1), std::nullopt);
    EXPECT_EQ(unique_.source(1), nullptr);
    EXPECT_EQ(unique_.lines(1), std::nullopt);
    EXPECT_EQ(namesOnlyHere(1), Names{});
}

TEST_F(UniquePropertiesTest, AreUnknownWithoutCards)
{
    reviewShows({card({}), card({text("NOTE", "a")})});

    unique_.read(engine_, nullptr);

    EXPECT_FALSE(unique_.has(1));
    EXPECT_EQ(unique_.count(), 0U);
    EXPECT_EQ(unique_.nextRow(std::nullopt), std::nullopt);
    EXPECT_EQ(unique_.lines(1), std::nullopt);
    EXPECT_EQ(unique_.substituteName(1), "");
    EXPECT_FALSE(unique_.hasSeveralSources());
    check(1, false);
}

TEST_F(UniquePropertiesTest, FailWithTheBook)
{
    reviewShows({card({}), card({})});

    EXPECT_THROW(unique_.read(engine_, std::make_unique<LostBook>().get()), PlatformError);
}

TEST_F(UniquePropertiesTest, DoNotShowACardThatHasChanged)
{
    reviewShows({card({}), card({text("NOTE", "a")})});

    cards_.byUid["1"] = card({text("NOTE", "b"), text("NOTE", "c")});

    EXPECT_TRUE(unique_.has(1));
    EXPECT_EQ(namesOnlyHere(1), Names{});
    EXPECT_EQ(unique_.lines(1), std::nullopt);
}

TEST_F(UniquePropertiesTest, GoToTheNextRowAndFromTheLastToTheFirst)
{
    reviewShows({card({}), card({text("NOTE", "a")}), card({}), card({text("NOTE", "b")})});

    EXPECT_EQ(unique_.nextRow(std::nullopt), 1U);
    EXPECT_EQ(unique_.nextRow(0), 1U);
    EXPECT_EQ(unique_.nextRow(1), 3U);
    EXPECT_EQ(unique_.nextRow(3), 1U);
    EXPECT_EQ(unique_.nextRow(99), 1U);
    check(3, false);
    EXPECT_EQ(unique_.nextRow(1), 1U);
}

TEST_F(UniquePropertiesTest, AreReadAgainAfterADeletion)
{
    reviewShows({card({text("NOTE", "a")}), card({text("NOTE", "a")}), card({text("NOTE", "a")})});
    check(2, false);
    engine_.deleteContacts({"0"});
    unique_.read(engine_, &cards_);
    EXPECT_FALSE(unique_.has(0));

    check(1, true);

    EXPECT_TRUE(unique_.has(0));
    EXPECT_TRUE(unique_.has(1));
}

TEST_F(UniquePropertiesTest, AreForgottenWhenCleared)
{
    reviewShows({card({}), card({text("NOTE", "a")})});

    unique_.clear();

    EXPECT_EQ(unique_.count(), 0U);
    EXPECT_FALSE(unique_.has(1));
    check(1, false);
    check(1, true);
    EXPECT_FALSE(unique_.has(1));
    EXPECT_EQ(unique_.text(1), "");
}

TEST_F(UniquePropertiesTest, CompareTheLinesOfACheckedCopyWithTheKeptOnes)
{
    reviewShows({card({text("BDAY", "1980-04-01"), text("EMAIL", "a@b.org")}),
                 card({text("UID", "1"), text("BDAY", "1980-04-02"), text("EMAIL", "a@b.org"),
                       text("NOTE", "a")}),
                 card({})});

    const auto lines = unique_.lines(1);

    ASSERT_TRUE(lines);
    ASSERT_EQ(lines->size(), 3U);
    EXPECT_EQ((*lines)[0].verdict, CardVerdict::Different);
    EXPECT_EQ((*lines)[0].keptValue, "1980-04-01");
    EXPECT_EQ((*lines)[1].verdict, CardVerdict::Same);
    EXPECT_EQ((*lines)[2].verdict, CardVerdict::OnlyHere);
}

TEST_F(UniquePropertiesTest, CompareTheLinesOfAKeptCopyWithTheOtherKeptOnes)
{
    reviewShows({card({text("NOTE", "a"), text("EMAIL", "a@b.org")}), card({text("NOTE", "a")})});
    EXPECT_EQ(unique_.lines(0)->front().verdict, CardVerdict::None);

    check(1, false);

    EXPECT_EQ(unique_.lines(0)->front().verdict, CardVerdict::Same);
    EXPECT_EQ(unique_.lines(0)->back().verdict, CardVerdict::OnlyHere);
}

TEST_F(UniquePropertiesTest, SayThatEverythingIsOnlyHereWhenNoCopyIsKept)
{
    reviewShows({card({text("NOTE", "a")}), card({text("NOTE", "a")})});

    check(0, true);

    EXPECT_EQ(unique_.lines(1)->front().verdict, CardVerdict::OnlyHere);
}

TEST_F(UniquePropertiesTest, ReadFewOfManyKeptCardsForTheLines)
{
    reviewShows(std::vector<PersonCard>(1000, card({text("NOTE", "a")})));
    std::vector<std::size_t> rows(1000);
    std::iota(rows.begin(), rows.end(), 0U);
    for (const auto row : rows) {
        check(row, false);
    }
    const auto before = cards_.readings;

    EXPECT_EQ(unique_.lines(999)->front().verdict, CardVerdict::Same);
    EXPECT_LT(cards_.readings - before, 20);
}

TEST_F(UniquePropertiesTest, KnowEqualCardsByTheirHashes)
{
    reviewShows({card({text("NOTE", "a")}), card({text("NOTE", "a")}), card({text("NOTE", "b")})});

    EXPECT_TRUE(unique_.cardHash(0));
    EXPECT_EQ(unique_.cardHash(0), unique_.cardHash(1));
    EXPECT_NE(unique_.cardHash(0), unique_.cardHash(2));
    EXPECT_EQ(unique_.cardHash(3), std::nullopt);
}

TEST_F(UniquePropertiesTest, NeedNotReadCardsThatTheBookCanCompare)
{
    cards_.comparable = {"0", "1", "2"};
    const auto same = card({text("FN", "Ann"), text("NOTE", "a")});
    reviewShows({same, same, same});
    cards_.readings = 0;

    unique_.read(engine_, &cards_, UniqueProperties::Hashes::WhenAsked);

    EXPECT_EQ(unique_.count(), 0U);
    EXPECT_EQ(*unique_.source(2), same.source);
    EXPECT_EQ(cards_.readings, 0);
    EXPECT_EQ(unique_.cardHash(1), hashOf(same));
    check(0, true);
    EXPECT_EQ(unique_.count(), 3U);
    EXPECT_EQ(namesOnlyHere(2), (Names{"FN=Ann", "NOTE=a"}));
    ASSERT_TRUE(unique_.lines(1));
    EXPECT_EQ(unique_.lines(1)->at(1).verdict, CardVerdict::OnlyHere);
}

TEST_F(UniquePropertiesTest, ReadOnlyThePropertiesInWhichTheCardsDiffer)
{
    cards_.comparable = {"0", "1"};
    reviewShows({card({text("FN", "Ann"), text("NOTE", "a"), text("UID", "0")}, {"Choir"}),
                 card({text("NOTE", "b"), text("FN", "Ann"), text("UID", "1")}, {"Choir"})});
    cards_.readings = 0;

    unique_.read(engine_, &cards_, UniqueProperties::Hashes::WhenAsked);

    EXPECT_TRUE(unique_.has(1));
    EXPECT_EQ(cards_.readings, 0);
    EXPECT_EQ(namesOnlyHere(1), Names{"NOTE=b"});
    check(0, true);
    EXPECT_EQ(namesOnlyHere(1), (Names{"NOTE=b", "FN=Ann", "MEMBER=Choir"}));
}

TEST_F(UniquePropertiesTest, FindAFormattedNameInANameThatAllCardsHave)
{
    cards_.comparable = {"0", "1"};
    const auto name = structured("N", {"Lee", "Ann"});
    reviewShows({card({name}), card({name, text("FN", "Ann Lee")})});

    unique_.read(engine_, &cards_, UniqueProperties::Hashes::WhenAsked);

    EXPECT_FALSE(unique_.has(1));
}

TEST_F(UniquePropertiesTest, KeepTheHashesOfCardsThatTheBookCanCompare)
{
    cards_.comparable = {"0", "1"};
    reviewShows({card({text("FN", "Ann")}), card({text("FN", "Ann")})});
    cards_.byUid.clear();

    EXPECT_TRUE(unique_.cardHash(0));
    EXPECT_EQ(unique_.cardHash(0), unique_.cardHash(1));
}

TEST_F(UniquePropertiesTest, ReadCardsThatTheBookCannotCompare)
{
    cards_.comparable = {"0"};
    reviewShows({card({text("NOTE", "a")}), card({text("NOTE", "b")})});

    unique_.read(engine_, &cards_, UniqueProperties::Hashes::WhenAsked);

    EXPECT_EQ(unique_.count(), 1U);
    EXPECT_EQ(unique_.source(1)->name, "book");
    EXPECT_EQ(unique_.source(2), nullptr);
}

TEST_F(UniquePropertiesTest, AreTheSameWhenTheBookCompares)
{
    const std::vector<CardProperty> properties{structured("N", {"Lee", "Ann"}),
                                               structured("N", {"Lee", "Ann", "B."}),
                                               text("FN", "Ann Lee"),
                                               text("FN", "Lee, Ann"),
                                               text("TEL", "+49 30 1234567"),
                                               text("TEL", "030 1234567"),
                                               text("TEL", "030 7654321"),
                                               text("EMAIL", "a@b.org"),
                                               text("EMAIL", "a@B.org"),
                                               text("NOTE", "a"),
                                               text("NOTE", " "),
                                               text("REV", "2024-01-01"),
                                               text("REV", "2025-01-01"),
                                               text("MEMBER", "a"),
                                               binary("PHOTO", "a"),
                                               binary("PHOTO", "b")};
    std::mt19937 random(14);
    const auto number = [&](std::size_t count) { return random() % count; };
    constexpr std::size_t kCards = 3;
    cards_.comparable = {"0", "1", "2"};
    for (int i = 0; i < 300; ++i) {
        std::vector<PersonCard> cards(kCards, card({text("FN", "Ann")}, {"Choir"}));
        for (auto& made : cards) {
            for (const auto& property : properties) {
                if (number(4) == 0) {
                    made.properties.push_back(property);
                }
            }
            std::shuffle(made.properties.begin(), made.properties.end(), random);
        }
        reviewShows(cards);
        UniqueProperties compared;
        compared.read(engine_, &cards_, UniqueProperties::Hashes::WhenAsked);
        for (int edits = 0; edits < 4; ++edits) {
            const std::vector rows{number(kCards)};
            check(rows[0], number(2) == 0);
            compared.rowsEdited(engine_, rows);
            ASSERT_EQ(compared.count(), unique_.count());
            for (std::size_t row = 0; row < kCards; ++row) {
                ASSERT_EQ(compared.has(row), unique_.has(row));
                ASSERT_EQ(compared.text(row), unique_.text(row));
                ASSERT_EQ(compared.cardHash(row), unique_.cardHash(row));
                const auto lines = unique_.lines(row).value();
                const auto others = compared.lines(row).value();
                ASSERT_EQ(lines.size(), others.size());
                for (std::size_t line = 0; line < lines.size(); ++line) {
                    ASSERT_EQ(lines[line].verdict, others[line].verdict);
                }
            }
        }
    }
}

TEST_F(UniquePropertiesTest, AreTheSameOnSeveralThreads)
{
    constexpr std::size_t kGroups = 1200;
    std::mt19937 random(14);
    const auto number = [&](std::size_t count) { return random() % count; };
    std::vector<FakePerson> people;
    for (std::size_t group = 0; group < kGroups; ++group) {
        const auto name = std::to_string(group);
        for (auto copies = 2 + number(3); copies > 0; --copies) {
            const auto uid = std::to_string(people.size());
            people.push_back(named(uid, name));
            auto& made = cards_.byUid[uid] = card({text("FN", name)});
            made.source.address = std::to_string(number(3));
            for (const auto* const property : {"NOTE", "TEL", "EMAIL"}) {
                if (number(3) == 0) {
                    made.properties.push_back(text(property, std::to_string(number(2))));
                }
            }
            if (number(50) > 0) {
                cards_.comparable.insert(uid);
            }
            if (number(100) == 0) {
                cards_.byUid[uid].lists = {"Choir"};
                cards_.comparable.erase(uid);
            }
        }
    }
    platform_.addressBook = FakeAddressBook(std::move(people));
    engine_.load();
    engine_.findDupes();
    unique_.read(engine_, &cards_, UniqueProperties::Hashes::WhenAsked, 1);
    const auto rows = engine_.duplicates().size();
    ASSERT_GT(rows, 2 * kGroups);
    ASSERT_GT(unique_.count(), kGroups / 10);
    UniqueProperties read;
    read.read(engine_, &cards_);

    UniqueProperties onThreads;
    onThreads.read(engine_, &cards_, UniqueProperties::Hashes::WhenAsked, 3);

    EXPECT_EQ(onThreads.count(), unique_.count());
    for (std::size_t row = 0; row < rows; ++row) {
        ASSERT_EQ(onThreads.has(row), unique_.has(row));
        ASSERT_EQ(onThreads.has(row), read.has(row));
        ASSERT_EQ(onThreads.source(row)->address, unique_.source(row)->address);
        ASSERT_EQ(onThreads.cardHash(row), read.cardHash(row));
        if (row % 5 == 0) {
            ASSERT_EQ(onThreads.text(row), read.text(row));
        }
    }
}

TEST_F(UniquePropertiesTest, KnowTheSourcesOfTheRows)
{
    auto other = card({});
    other.source = {"other.vcf", "other"};
    reviewShows({card({}), card({})});
    EXPECT_FALSE(unique_.hasSeveralSources());

    reviewShows({card({}), other, card({})});

    EXPECT_TRUE(unique_.hasSeveralSources());
    EXPECT_EQ(*unique_.source(0), (PersonSource{"book.vcf", "book"}));
    EXPECT_EQ(*unique_.source(1), other.source);
    EXPECT_EQ(*unique_.source(2), (PersonSource{"book.vcf", "book"}));
    EXPECT_EQ(unique_.source(3), nullptr);
}

TEST_F(UniquePropertiesTest, NameARowWhoseNamesAreBlank)
{
    firstName_ = "";
    lastName_ = "\u00A0";
    reviewShows({card({structured("ORG", {"Acme", "Sales"})}), card({text("FN", "Lee & Sons")})});

    EXPECT_EQ(unique_.substituteName(0), "Acme, Sales");
    EXPECT_EQ(unique_.substituteName(1), "Lee & Sons");
    EXPECT_EQ(unique_.substituteName(2), "");
}

TEST_F(UniquePropertiesTest, DoNotRenameARowWithAName)
{
    reviewShows({card({text("FN", "Annie")}), card({})});

    EXPECT_EQ(unique_.substituteName(0), "");
}

}  // namespace
}  // namespace dunmora::test
