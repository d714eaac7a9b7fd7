#include "ui/ReviewRows.h"

#include "engine/ContactRecord.h"
#include "engine/ContactsParser.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/People.h"
#include "text/DisplayText.h"

#include <limits>

namespace dunmora::test {
namespace {

/// Six rows: Abel, Ann and Zoë, each twice.
class ReviewRowsTest : public DesktopTest {
protected:
    void SetUp() override
    {
        std::vector<FakePerson> people;
        for (const auto* name : {"Abel", "Ann", "Zo\u00EB"}) {
            for (const auto* copy : {"1", "2"}) {
                auto& added = people.emplace_back(person(std::string(name) + copy, name));
                added.lastName = "";
            }
        }
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        const std::string zoe = "Zo\u00EB";
        ASSERT_EQ(engine_.duplicates(), (std::vector<std::string>{"Abel1", "Abel2", "Ann1", "Ann2",
                                                                  zoe + "1", zoe + "2"}));
    }

    static std::optional<std::size_t> typing(std::string_view typed, std::size_t first)
    {
        return rowForTyping(typed, first, [](std::size_t /*row*/) { return true; });
    }

    ContactsParser& engine_ = ContactsParser::parser();
};

TEST_F(ReviewRowsTest, HasARecordForEachRowAndNoOther)
{
    ASSERT_NE(recordInRow(2), nullptr);
    EXPECT_EQ(recordInRow(2)->text(kContactUid), "Ann1");
    EXPECT_EQ(recordInRow(6), nullptr);
    EXPECT_EQ(recordInRow(-1), nullptr);
    EXPECT_EQ(recordInRow(std::numeric_limits<std::ptrdiff_t>::min()), nullptr);
}

TEST_F(ReviewRowsTest, HasAValueUnderEachColumnsIdentifier)
{
    auto& record = *recordInRow(0);
    record.setObject(std::chrono::sys_seconds{}, kContactModified);
    record.setObject(true, kContactCheck);

    for (const auto& column : reviewColumns()) {
        EXPECT_NE(record.objectForKey(column.identifier), std::nullopt) << column.identifier;
    }
}

TEST_F(ReviewRowsTest, HasRoomForANumberInTheColumnsThatWereCompared)
{
    platform_.userDefaults.setBool("filterHome", true);
    EXPECT_EQ(leastText(kContactHome), "") << "not searched yet";
    engine_.findDupes();

    std::vector<std::string_view> columns;
    for (const auto& column : reviewColumns()) {
        if (!leastText(column.identifier).empty()) {
            columns.push_back(column.identifier);
        }
    }

    EXPECT_EQ(columns, (std::vector{kContactFirstName, kContactLastName, kContactHome}));
    EXPECT_EQ(leastText("note"), "") << "no field";
    EXPECT_EQ(reviewColumns().back().kind, TableColumn::Kind::Date);
}

TEST_F(ReviewRowsTest, HasTheCheckBoxFirstAndAColumnForEveryOtherFieldButTheUid)
{
    std::vector<std::string> titles;
    for (const auto& column : reviewColumns()) {
        titles.emplace_back(column.title);
    }

    EXPECT_EQ(titles, (std::vector<std::string>{"Delete", "First Name", "Last Name", "Nickname",
                                                "Home", "Work", "Mobile", "Modified"}));
    EXPECT_EQ(reviewColumns()[0].kind, TableColumn::Kind::CheckBox);
    EXPECT_EQ(reviewColumns()[2].kind, TableColumn::Kind::WideText);
    EXPECT_EQ(reviewColumns()[3].kind, TableColumn::Kind::Text);
}

TEST_F(ReviewRowsTest, FiltersByTheTextOfARow)
{
    const auto filter = reviewFilter("zO");

    EXPECT_FALSE(filter->matches(0));
    EXPECT_TRUE(filter->matches(4));
    EXPECT_FALSE(filter->matches(6)) << "a row that does not exist";
    EXPECT_TRUE(filter->narrows("z"));
    EXPECT_FALSE(filter->narrows("zo\u00EB"));
}

TEST_F(ReviewRowsTest, NeedsNoFilterForBlanks)
{
    EXPECT_EQ(reviewFilter(""), nullptr);
    EXPECT_EQ(reviewFilter(" "), nullptr);
}

TEST_F(ReviewRowsTest, TypingFindsTheNextNameFromARowOn)
{
    EXPECT_EQ(typing("a", 0), 0U);
    EXPECT_EQ(typing("AN", 0), 2U);
    EXPECT_EQ(typing("z", 5), 5U);
    EXPECT_EQ(typing("b", 0), std::nullopt);
}

TEST_F(ReviewRowsTest, TypingFindsALastName)
{
    recordInRow(3)->setObject("Bell", kContactLastName);

    EXPECT_EQ(typing("b", 0), 3U);
}

TEST_F(ReviewRowsTest, TypingStartsAgainAtTheFirstRow)
{
    EXPECT_EQ(typing("ab", 2), 0U);
}

TEST_F(ReviewRowsTest, TypingFindsOnlyRowsThatAreShown)
{
    EXPECT_EQ(rowForTyping("a", 0, [](std::size_t row) { return row == 3; }), 3U);
    EXPECT_EQ(rowForTyping("a", 0, [](std::size_t row) { return row == 4; }), std::nullopt);
}

TEST_F(ReviewRowsTest, TypingOneLetterAgainAndAgainStepsThroughNames)
{
    EXPECT_EQ(typing("aaa", 1), 1U);
    EXPECT_EQ(typing("zz", 5), 5U);
    EXPECT_EQ(typing("\u00EB\u00EB", 0), std::nullopt);
    recordInRow(3)->setObject("\u00CBlodie", kContactFirstName);
    EXPECT_EQ(typing("\u00EB\u00EB", 0), 3U);
    EXPECT_EQ(typing("az", 0), std::nullopt);
}

TEST_F(ReviewRowsTest, TypingPrefersANameWithTheWholeText)
{
    recordInRow(3)->setObject("Aabel", kContactFirstName);

    EXPECT_EQ(typing("aa", 0), 3U);
}

TEST_F(ReviewRowsTest, TypingNothingInAnEmptyTableFindsNothing)
{
    engine_.reset();

    EXPECT_EQ(typing("a", 0), std::nullopt);
    EXPECT_EQ(typing("", 0), std::nullopt);
}

/// A contact with these texts and no others.
ContactRecord contact(std::initializer_list<std::pair<std::string_view, std::string_view>> texts)
{
    ContactRecord record;
    for (const auto& [key, text] : texts) {
        record.setObject(text, key);
    }
    return record;
}

TEST(AccessibleText, NamesThePersonAndTheCheckMark)
{
    auto record = contact({{kContactFirstName, "Ann"}, {kContactLastName, "Lee"}});
    EXPECT_EQ(accessibleText(record, ""), "Ann Lee, kept");
    EXPECT_EQ(accessibleText(record, "", "", "copy 2 of 4"), "Ann Lee, copy 2 of 4, kept");

    record.setObject(true, kContactCheck);
    EXPECT_EQ(accessibleText(record, ""), "Ann Lee, marked for deletion");
}

TEST(AccessibleText, EndsWithTheWarning)
{
    EXPECT_EQ(accessibleText(contact({{kContactLastName, "Lee"}}), "Look again."),
              "Lee, kept. Look again.");
}

TEST(AccessibleText, NamesThePersonByAnotherTextInOneLine)
{
    EXPECT_EQ(accessibleText(contact({{kContactNickname, "An\nnie"}}), ""), "An nie, kept");
}

TEST(AccessibleText, CutsALongNameButNotWhatFollows)
{
    const std::string megabyte(1'000'000, 'x');
    const auto text = accessibleText(
        contact({{kContactFirstName, megabyte}, {kContactLastName, megabyte}}), "Look again.");

    EXPECT_EQ(text, std::string(kMaxShownBytes / 2, 'x') + "…, kept. Look again.");
    EXPECT_LT(text.size(), kMaxShownBytes);
}

TEST(AccessibleCellText, NamesTheColumnAndWhatTheCellShows)
{
    EXPECT_EQ(accessibleCellText("Home", "555-0100"), "Home: 555-0100");
    EXPECT_EQ(accessibleCellText("Nickname", ""), "Nickname: empty");
    EXPECT_EQ(accessibleCellText("Home", std::nullopt), "Home: not shown yet");
}

using CopyText = DesktopTest;

TEST_F(CopyText, CountsTheCopiesOfAGroup)
{
    EXPECT_EQ(copyText(7, {6, 4}), "copy 2 of 4");
}

using CountText = DesktopTest;

TEST_F(CountText, CountsTheRowsThatAreShown)
{
    EXPECT_EQ(countText(31, 120), "31 of 120 match");
    EXPECT_EQ(countText(120, 120), "120 of 120 match");
    EXPECT_EQ(countText(0, 0), "0 of 0 match");
}

TEST_F(CountText, ReportsThatNothingMatches)
{
    EXPECT_EQ(countText(0, 3), "No matches: 0 of 3 match");
}

TEST(AccessibleText, ShowsNoUid)
{
    EXPECT_EQ(accessibleText(contact({{kContactUid, "u"}}), ""), "no name, kept");
}

}  // namespace
}  // namespace dunmora::test
