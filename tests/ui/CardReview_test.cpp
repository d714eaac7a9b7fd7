#include "ui/CardReview.h"

#include "engine/ContactRecord.h"
#include "engine/ContactsParser.h"
#include "platform/PlatformError.h"
#include "review/GroupWarnings.h"
#include "review/ReviewTexts.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/People.h"
#include "ui/LookFilter.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using Sign = RowStyle::Warning::Sign;

FakePerson withEmail(FakePerson person, const std::string& email)
{
    person.properties.push_back({"EMAIL", "", {email}, std::nullopt});
    return person;
}

FakePerson from(FakePerson person, const std::string& book)
{
    person.source = {book, book};
    return person;
}

/// A book that cannot be reached.
class LostBook final : public CardSource {
public:
    std::string cards(std::span<const Person* const> /*people*/) const override { return {}; }
    std::optional<PersonCard> card(std::string_view /*uid*/) const override
    {
        throw PlatformError("The server does not respond.");
    }
};

class CardReviewTest : public DesktopTest {
protected:
    /// Searches the book; in each group the engine checks all but one.
    void reviewShows(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        groups_.update(engine_);
        cards_.setReading(CardReview::read());
        cards_.update();
    }

    void select(std::size_t row)
    {
        main_.tableView("tableContacts").selected = row;
        cards_.updateDetails();
    }

    void check(std::size_t row, bool on)
    {
        engine_.contacts().find(engine_.duplicates()[row])->setObject(on, kContactCheck);
        const std::array rows{row};
        groups_.rowsEdited(engine_, rows);
        cards_.rowsEdited(rows);
    }

    std::string heading() { return main_.textField("txtDetails").stringValue; }

    /// "Title: value (verdict)" of the line with this title; empty when there is none.
    std::string lineTitled(const std::string& title)
    {
        for (const auto& line : main_.detailsView("lstDetails").lines) {
            if (line.title == title) {
                return line.title + ": " + line.value + " (" + line.verdict + ")";
            }
        }
        return {};
    }

    RowStyle styleOf(std::size_t row)
    {
        RowStyle style;
        cards_.decorate(row, style);
        return style;
    }

    ContactsParser& engine_ = ContactsParser::parser();
    FakeInterface main_{"MainWindow", log_};
    GroupWarnings groups_;
    CardReview cards_{main_, groups_};
};

TEST_F(CardReviewTest, MarksAndCountsCheckedRowsThatHoldSomethingUnique)
{
    reviewShows({person("1"), withEmail(person("2"), "ann@example.com")});
    check(0, false);
    check(1, true);

    EXPECT_EQ(styleOf(0).warning.sign, Sign::None);
    EXPECT_EQ(styleOf(1).warning.sign, Sign::OnlyHere);
    EXPECT_NE(cards_.uniqueText(1).find("ann@example.com"), std::string::npos);
    EXPECT_EQ(main_.button("btnOnlyHere").title, "1 copy holds something unique");
    EXPECT_FALSE(main_.button("btnOnlyHere").isHidden);

    check(1, false);
    EXPECT_EQ(styleOf(1).warning.sign, Sign::None);
    EXPECT_TRUE(main_.button("btnOnlyHere").isHidden);
}

TEST_F(CardReviewTest, JumpsToTheNextRowThatHoldsSomethingUnique)
{
    reviewShows({person("1"), withEmail(person("2"), "ann@example.com"), person("3", "Ben"),
                 withEmail(person("4", "Ben"), "ben@example.com")});
    for (std::size_t row = 0; row < 4; ++row) {
        check(row, row % 2 == 1);
    }

    main_.command("OnNextOnlyHere").use();
    EXPECT_EQ(main_.tableView("tableContacts").selected, 1U);
    main_.command("OnNextOnlyHere").use();
    EXPECT_EQ(main_.tableView("tableContacts").selected, 3U);
    main_.command("OnNextOnlyHere").use();
    EXPECT_EQ(main_.tableView("tableContacts").selected, 1U);
}

TEST_F(CardReviewTest, ComparesTheSelectedCardWithTheKeptOne)
{
    auto other = withEmail(person("2"), "ann@example.com");
    reviewShows({person("1"), other});
    check(0, false);
    check(1, true);

    select(1);
    EXPECT_EQ(heading(), "Ann Lee, marked for deletion. Compared with the kept copy:");
    EXPECT_EQ(lineTitled("E-mail"), "E-mail: ann@example.com (only here)");
    EXPECT_NE(lineTitled("Nickname").find("(same in the kept copy)"), std::string::npos);

    check(0, true);
    EXPECT_EQ(heading(), "Ann Lee, marked for deletion. No copy is kept.");

    check(0, false);
    check(1, false);
    select(1);
    EXPECT_EQ(heading(), "Ann Lee, kept. Compared with the other kept copies:");
}

TEST_F(CardReviewTest, AsksForARowWhenNoneIsSelected)
{
    reviewShows({person("1"), person("2")});
    select(1);
    main_.tableView("tableContacts").selected.reset();
    cards_.updateDetails();

    EXPECT_EQ(heading(), "Select a row to see everything that its card holds.");
    EXPECT_TRUE(main_.detailsView("lstDetails").lines.empty());
}

TEST_F(CardReviewTest, HidesThePaneAndReadsNoCardWhileItIsHidden)
{
    reviewShows({person("1"), person("2")});
    EXPECT_TRUE(main_.command("OnDetails").isChecked);
    select(0);
    const auto before = main_.detailsView("lstDetails").lines;

    main_.command("OnDetails").use();
    EXPECT_TRUE(main_.view("vwDetails").isHidden);
    EXPECT_FALSE(main_.command("OnDetails").isChecked);
    check(0, true);
    check(1, false);
    EXPECT_EQ(main_.detailsView("lstDetails").lines, before);

    main_.command("OnDetails").use();
    EXPECT_FALSE(main_.view("vwDetails").isHidden);
    EXPECT_TRUE(main_.command("OnDetails").isChecked);
    EXPECT_NE(main_.detailsView("lstDetails").lines, before);
}

TEST_F(CardReviewTest, ReportsThatTheCardsCouldNotBeRead)
{
    LostBook lost;
    platform_.platform.cardSource = &lost;

    reviewShows({person("1"), person("2")});
    select(0);

    EXPECT_NE(heading().find("The server does not respond."), std::string::npos);
    EXPECT_EQ(styleOf(1).warning.sign, Sign::None);
}

TEST_F(CardReviewTest, ShowsWherePeopleAreFromWhenThereIsMoreThanOneBook)
{
    reviewShows({from(person("1"), "Family"), from(person("2"), "Family")});
    EXPECT_EQ(cards_.noteTitle(), "");
    EXPECT_EQ(styleOf(0).note, "");

    reviewShows({from(person("1"), "Family"), from(person("2"), "Work")});
    EXPECT_EQ(cards_.noteTitle(), "Book");
    EXPECT_EQ(styleOf(0).note, "Family");
    EXPECT_EQ(styleOf(1).note, "Work");
    select(1);
    EXPECT_NE(heading().find("From Work. "), std::string::npos);
}

TEST_F(CardReviewTest, NamesPeopleWithoutANameByTheirCards)
{
    auto one = withEmail(named("1", "", ""), "info@example.com");
    auto two = withEmail(named("2", "", ""), "shop@example.com");
    reviewShows({one, two});

    EXPECT_EQ(styleOf(0).substitute.column, kContactFirstName);
    EXPECT_EQ(styleOf(0).substitute.text, "info@example.com");
    EXPECT_EQ(styleOf(0).substitute.accessibleText, "First Name: empty, shown as info@example.com");

    reviewShows({person("1"), person("2")});
    EXPECT_EQ(styleOf(0).substitute.text, "");
}

TEST_F(CardReviewTest, ForgetsTheRows)
{
    reviewShows({person("1"), withEmail(person("2"), "ann@example.com")});
    check(0, false);
    check(1, true);
    select(1);

    cards_.clear(CardReview::Details::Keep);
    EXPECT_EQ(styleOf(1).warning.sign, Sign::None);
    EXPECT_TRUE(main_.button("btnOnlyHere").isHidden);
    EXPECT_NE(lineTitled("E-mail"), "");

    cards_.clear(CardReview::Details::Clear);
    EXPECT_EQ(lineTitled("E-mail"), "");
}

TEST_F(CardReviewTest, LeavesTheDetailsAloneDuringAJob)
{
    reviewShows({person("1"), withEmail(person("2"), "ann@example.com")});
    select(1);
    const auto before = heading();
    cards_.clear(CardReview::Details::Keep);

    select(0);
    main_.command("OnDetails").use();
    main_.command("OnDetails").use();
    EXPECT_EQ(heading(), before) << "a job may be changing the rows";

    cards_.setReading(CardReview::read());
    cards_.update();
    EXPECT_NE(heading(), before);
}

TEST_F(CardReviewTest, ShowsAtMostSomeHundredLinesOfACard)
{
    auto big = person("2");
    for (int i = 0; i < 1000; ++i) {
        big = withEmail(std::move(big), std::to_string(i) + "@example.com");
    }
    reviewShows({person("1"), big});

    select(1);

    const auto& lines = main_.detailsView("lstDetails").lines;
    ASSERT_EQ(lines.size(), 301U);
    EXPECT_TRUE(lines.back().value.ends_with(" more"));
}

/// Finds one row.
class OneRow final : public RowFilter {
public:
    explicit OneRow(std::size_t row) : row_(row) {}
    bool matches(std::size_t row) override { return row == row_; }
    bool narrows(std::string_view /*earlier*/) const override { return true; }

private:
    std::size_t row_;
};

TEST_F(CardReviewTest, TheLookFilterShowsWholeGroupsAsTheyWere)
{
    reviewShows({person("1"), withEmail(person("2"), "ann@example.com"), person("3", "Ben"),
                 person("4", "Ben")});
    check(0, false);
    check(1, true);
    check(2, false);
    check(3, true);
    const auto has = [this](std::size_t row) { return cards_.has(row); };
    LookFilter filter(groups_, 4, has, nullptr);
    LookFilter narrowed(groups_, 4, has, std::make_unique<OneRow>(1));

    EXPECT_TRUE(filter.matches(0));
    EXPECT_TRUE(filter.matches(1));
    EXPECT_FALSE(filter.matches(2));
    EXPECT_FALSE(narrowed.matches(0));
    EXPECT_TRUE(narrowed.matches(1));
    EXPECT_FALSE(narrowed.narrows(""));

    check(1, false);
    check(2, true);
    EXPECT_TRUE(filter.matches(1));
    EXPECT_FALSE(LookFilter(groups_, 4, has, nullptr).matches(1));
    EXPECT_TRUE(LookFilter(groups_, 4, has, nullptr).matches(2));
}

}  // namespace
}  // namespace dunmora::test
