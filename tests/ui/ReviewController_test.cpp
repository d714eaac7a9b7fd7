#include "ui/ReviewController.h"

#include "app/DunmoraAppDelegate.h"
#include "base/JobThreads.h"
#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"
#include "review/ReviewTexts.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/People.h"
#include "ui/ContactsController.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace dunmora::test {
namespace {

using Sign = RowStyle::Warning::Sign;

constexpr auto kLossText = "Every copy of this person is checked: none would be left.";
constexpr auto kDoubtText =
    "The fields compared are empty in these cards: they may be different people.";

/// A person whose compared fields are all empty.
FakePerson nobody(const std::string& uid)
{
    return named(uid, "", "");
}

class ReviewControllerTest : public DesktopTest {
protected:
    void SetUp() override
    {
        main_.tableView("tableContacts").setDataSource(&contacts_, &review_);
        review_.awakeFromNib();
        delegate_.applicationDidFinishLaunching();
        contacts_.awakeFromNib();
        application_.onDetach = [this](std::string_view name) {
            if (!jobsRun_) {
                jobsRun_ = true;
                review_.jobsBegan(name);
            }
        };
        theUserAnswers("OnOkay");
    }

    void theUserAnswers(const std::string& command)
    {
        application_.onRunModal = [this, command](Window& /*window*/) {
            loader_.last->command(command).use();
        };
    }

    void bookHolds(std::vector<FakePerson> people)
    {
        const auto notes = platform_.addressBook.readingNotes;
        platform_.addressBook = FakeAddressBook(std::move(people));
        platform_.addressBook.readingNotes = notes;
    }

    /// Waits for the running jobs and those that follow them.
    void finishJobs()
    {
        application_.runUntilIdle();
        if (jobsRun_) {
            jobsRun_ = false;
            review_.jobsEnded();
        }
    }

    void search()
    {
        main_.command("OnReload").use();
        finishJobs();
    }

    void searchIn(std::vector<FakePerson> people)
    {
        bookHolds(std::move(people));
        search();
    }

    /// Does what a click on each row's check box does.
    void toggle(const std::vector<std::size_t>& rows)
    {
        for (const auto row : rows) {
            contacts_.setObjectValue(true, "check", static_cast<std::ptrdiff_t>(row));
        }
        review_.rowsEdited(rows);
    }

    /// The texts of the page in place of the table, and its button; empty while the table is shown.
    std::string emptiness()
    {
        EXPECT_NE(main_.view("vwEmpty").isHidden, table().isHidden);
        if (main_.view("vwEmpty").isHidden) {
            return {};
        }
        const auto& hint = main_.textField("txtEmptyHint");
        return main_.textField("txtEmptyTitle").stringValue +
               (hint.isHidden ? "" : " | " + hint.stringValue) +
               (main_.button("btnEmptyOpen").isHidden ? "" : " | Open");
    }

    /// The total line; empty while it is hidden.
    std::string total()
    {
        const auto& total = main_.textField("txtTotal");
        return total.isHidden ? "" : total.stringValue;
    }

    /// The button's title; empty while it is hidden.
    std::string titleOf(const std::string& button)
    {
        return main_.button(button).isHidden ? "" : main_.button(button).title;
    }

    bool areEnabled(std::initializer_list<std::string_view> commands, bool enabled)
    {
        return std::all_of(commands.begin(), commands.end(), [&](std::string_view command) {
            return main_.command(command).isEnabled == enabled;
        });
    }

    /// The user presses these buttons of the next alerts.
    void theUserPresses(std::vector<int> buttons)
    {
        platform_.alert.onRunModal =
            [buttons, next = std::size_t{0}](const AlertContent& /*content*/) mutable {
                return buttons.at(next++);
            };
    }

    /// The messages of the alerts so far.
    Calls alerts() const
    {
        Calls texts;
        for (const auto& alert : platform_.alert.shown) {
            texts.push_back(alert.messageText);
        }
        return texts;
    }

    bool hasClosedTheFilter() const
    {
        const auto made = calls();
        return std::find(made.begin(), made.end(), "MainWindow.tableContacts endFiltering") !=
               made.end();
    }

    /// "x" for every row that is checked, "-" for the others.
    std::string marks()
    {
        std::string marks;
        for (std::size_t row = 0; row < contacts_.numberOfRows(); ++row) {
            marks +=
                contacts_.objectValue("check", static_cast<std::ptrdiff_t>(row)) == CellValue(true)
                    ? 'x'
                    : '-';
        }
        return marks;
    }

    FakeTableView& table() { return main_.tableView("tableContacts"); }

    FakeInterface main_{"MainWindow", log_};
    DunmoraAppDelegate delegate_;
    ContactsController contacts_{main_, [this] { delegate_.LoadContacts(); }};
    bool choosesABook_ = true;
    std::vector<OpenPanel::Kind> kindsOpened_;
    bool jobsRun_ = false;
    ReviewController review_{main_, contacts_, [this](OpenPanel::Kind kind) {
                                 kindsOpened_.push_back(kind);
                                 return choosesABook_;
                             }};
};

TEST_F(ReviewControllerTest, SaysWhatToDoBeforeTheFirstSearch)
{
    EXPECT_EQ(emptiness(),
              "Not searched yet | "
              "Choose Reload to read the address book and look for duplicates. | Open");
    EXPECT_TRUE(areEnabled({"OnReload", "OnOpen"}, true));
    EXPECT_TRUE(areEnabled(
        {"OnDelete", "OnCheckSelected", "OnUncheckSelected", "OnKeepOneOfEach", "OnFilter"},
        false));
    EXPECT_EQ(titleOf("btnLastCopies") + titleOf("btnEmptyFields") + titleOf("btnNotes"), "");
    EXPECT_EQ(total(), "");
}

TEST_F(ReviewControllerTest, SaysThatItWorksAndDisablesTheCommands)
{
    searchIn({named("1", "Ann"), named("2", "Ann")});
    ASSERT_EQ(emptiness(), "");

    main_.command("OnReload").use();

    EXPECT_EQ(emptiness(), "Looking for duplicates…");
    EXPECT_TRUE(areEnabled({"OnReload", "OnOpen", "OnDelete", "OnCheckSelected",
                            "OnUncheckSelected", "OnKeepOneOfEach", "OnFilter"},
                           false));
    EXPECT_EQ(titleOf("btnLastCopies"), "");
}

TEST_F(ReviewControllerTest, ReloadsByMatchFieldsToo)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ann")});
    toggle({1});
    ASSERT_EQ(marks(), "--x");

    main_.command("OnMatchFields").use();
    EXPECT_EQ(contacts_.numberOfRows(), 0U);
    EXPECT_TRUE(areEnabled({"OnReload", "OnMatchFields"}, false));
    finishJobs();

    EXPECT_EQ(marks(), "--x");
    EXPECT_TRUE(areEnabled({"OnReload", "OnMatchFields"}, true));
}

TEST_F(ReviewControllerTest, ShowsTheTableWhenThereAreDuplicates)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});

    EXPECT_EQ(emptiness(), "");
    EXPECT_TRUE(areEnabled({"OnReload", "OnOpen", "OnDelete", "OnCheckSelected",
                            "OnUncheckSelected", "OnKeepOneOfEach", "OnFilter"},
                           true));
    EXPECT_EQ(total(), "2 duplicates of 2");
}

TEST_F(ReviewControllerTest, SaysThatNoDuplicatesWereFound)
{
    searchIn({person("1", "Ann"), person("2", "Ben")});

    EXPECT_EQ(emptiness(), "No duplicates found | "
                           "Choose Edit > Match Fields… to compare other fields. | Open");
    EXPECT_TRUE(areEnabled({"OnReload", "OnMatchFields", "OnOpen", "OnOpenFolder"}, true));
    EXPECT_TRUE(areEnabled({"OnDelete", "OnFilter"}, false));
    EXPECT_EQ(total(), "0 duplicates of 2");
}

TEST_F(ReviewControllerTest, SaysThatTheBookIsEmpty)
{
    searchIn({});

    EXPECT_EQ(emptiness(), "This address book is empty | "
                           "Open another one to look for duplicates. | Open");
    EXPECT_EQ(total(), "0 duplicates of 0");
}

TEST_F(ReviewControllerTest, NamesTheEmptyBooksThatHaveNames)
{
    const std::string advice = " | Open another one to look for duplicates. | Open";
    platform_.addressBook.readingNotes.books = {"Per\nsonal"};
    searchIn({});
    EXPECT_EQ(emptiness(), "The address book “Per sonal” is empty" + advice);

    platform_.addressBook.readingNotes.books = {"Family", "Work", "Club"};
    searchIn({});
    EXPECT_EQ(emptiness(), "The address books “Family”, “Work” and “Club” are empty" + advice);
}

TEST_F(ReviewControllerTest, SaysThatTheSearchWasCancelled)
{
    theUserAnswers("OnCancel");

    searchIn({person("1", "Ann"), person("2", "Ann")});

    EXPECT_EQ(emptiness(), "The search was cancelled | Choose Reload to look for duplicates.");
    EXPECT_TRUE(areEnabled({"OnReload", "OnOpen"}, true));
}

TEST_F(ReviewControllerTest, KeepsTheTotalLineUntilTheNextSearchHasEnded)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    theUserAnswers("OnCancel");

    main_.command("OnReload").use();
    EXPECT_EQ(total(), "2 duplicates of 2");
    finishJobs();
    ASSERT_TRUE(emptiness().starts_with("The search was cancelled"));
    EXPECT_EQ(total(), "2 duplicates of 2");

    main_.command("OnReload").use();
    application_.runUntilIdle();
    review_.jobFailed(kThreadLoadContacts);
    finishJobs();
    EXPECT_EQ(total(), "2 duplicates of 2");
}

TEST_F(ReviewControllerTest, ForgetsTheTotalOfTheBookThatWasOpenBefore)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});

    review_.setBookIsOpen(true);

    EXPECT_EQ(total(), "");
}

TEST_F(ReviewControllerTest, SaysThatTheBookCouldNotBeRead)
{
    platform_.addressBook.readingNotes.remarks = {"a remark on an earlier reading"};
    main_.command("OnReload").use();
    application_.runUntilIdle();

    review_.jobFailed(kThreadLoadContacts);
    finishJobs();

    EXPECT_EQ(emptiness(), "The address book could not be read | "
                           "Choose Reload to try again, or open another one. | Open");
    EXPECT_EQ(titleOf("btnNotes"), "");
}

TEST_F(ReviewControllerTest, SaysWhyTheBookCouldNotBeReadUntilTheNextJob)
{
    main_.command("OnReload").use();
    application_.runUntilIdle();
    review_.jobFailed(kThreadLoadContacts, "The service has gone.");
    finishJobs();
    EXPECT_TRUE(emptiness().starts_with("The address book could not be read | The service has "
                                        "gone.\nChoose Reload to try again"));

    main_.command("OnReload").use();
    application_.runUntilIdle();
    review_.jobFailed(kThreadLoadContacts);
    finishJobs();
    EXPECT_TRUE(emptiness().starts_with("The address book could not be read | Choose Reload"));
}

TEST_F(ReviewControllerTest, SaysThatTheSearchFailed)
{
    main_.command("OnReload").use();
    application_.runUntilIdle();

    review_.jobFailed(kThreadFindDuplicates);
    finishJobs();

    EXPECT_EQ(emptiness(), "The search failed | Choose Reload to try again.");
}

TEST_F(ReviewControllerTest, SaysThatNoBookIsOpen)
{
    const std::string advice =
        "No address book is open | "
        "Open a vCard file or a folder of vCard files, or drop one on this window. | Open";
    review_.setBookIsOpen(false);
    EXPECT_EQ(emptiness(), advice);

    review_.setBookIsOpen(false, "There is\nnone.");
    const auto adviceWithReason = emptiness();
    EXPECT_TRUE(adviceWithReason.starts_with("No address book is open | There is none.\nOpen a"));

    main_.command("OnReload").use();
    application_.runUntilIdle();
    review_.jobFailed(kThreadLoadContacts);
    finishJobs();

    EXPECT_EQ(emptiness(), adviceWithReason);
}

TEST_F(ReviewControllerTest, SaysThatNoDuplicatesAreLeft)
{
    searchIn({named("1", "Ann"), named("2", "Ann")});
    theUserPresses({Alert::kOtherButton, Alert::kDefaultButton});

    main_.command("OnDelete").use();
    finishJobs();

    EXPECT_EQ(emptiness(), "No duplicates left | "
                           "Choose Reload to search again, with the same fields or others. | Open");
    EXPECT_TRUE(areEnabled({"OnDelete", "OnKeepOneOfEach"}, false));
    EXPECT_EQ(total(), "0 duplicates of 0");
}

TEST_F(ReviewControllerTest, LeavesTheTableOnTheScreenDuringADeletion)
{
    platform_.addressBook.readingNotes.cardsSkipped = 1;
    searchIn({person("1", "Ann"), person("2", "Ann"), named("3", "Ben"), named("4", "Ben")});
    ASSERT_EQ(titleOf("btnLastCopies"), "1 person would lose every copy");
    theUserPresses({Alert::kOtherButton, Alert::kDefaultButton});

    main_.command("OnDelete").use();

    EXPECT_EQ(emptiness(), "");
    EXPECT_EQ(titleOf("btnLastCopies"), "");
    EXPECT_EQ(titleOf("btnNotes"), "1 card was skipped");
    EXPECT_TRUE(
        areEnabled({"OnReload", "OnOpen", "OnOpenFolder", "OnDelete", "OnKeepOneOfEach"}, false));

    finishJobs();

    EXPECT_EQ(emptiness(), "");
    EXPECT_EQ(contacts_.numberOfRows(), 1U);
    EXPECT_TRUE(areEnabled({"OnReload", "OnOpen", "OnDelete", "OnKeepOneOfEach"}, true));
}

TEST_F(ReviewControllerTest, GoesFromAFailedDeletionToTheLoadThatFollows)
{
    platform_.addressBook.readingNotes.cardsSkipped = 1;
    searchIn({person("1", "Ann"), person("2", "Ann")});
    main_.command("OnDelete").use();
    application_.runUntilIdle();

    ContactsParser::parser().reset();
    review_.jobFailed(kThreadDeleteCheckedContacts);
    EXPECT_TRUE(emptiness().starts_with("Looking for duplicates…"));
    EXPECT_EQ(titleOf("btnNotes"), "");

    theUserAnswers("OnCancel");
    contacts_.OnReload(nullptr);
    finishJobs();

    EXPECT_TRUE(emptiness().starts_with("The search was cancelled"));
}

TEST_F(ReviewControllerTest, SaysNotSearchedAfterAFailedDeletionWithoutALoad)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    main_.command("OnDelete").use();
    application_.runUntilIdle();

    ContactsParser::parser().reset();
    review_.jobFailed(kThreadDeleteCheckedContacts);
    finishJobs();

    EXPECT_TRUE(emptiness().starts_with("Not searched yet"));
}

TEST_F(ReviewControllerTest, SaysNotSearchedWhenTheJobsEndWithoutAResult)
{
    searchIn({person("1", "Ann"), person("2", "Ben")});
    ASSERT_TRUE(emptiness().starts_with("No duplicates found"));

    review_.jobsBegan(kThreadLoadContacts);
    review_.jobsEnded();

    EXPECT_TRUE(emptiness().starts_with("Not searched yet"));
}

TEST_F(ReviewControllerTest, DecidesWhatTheUsersTypingFinds)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben")});

    const auto filter = review_.rowFilter("BEN");
    ASSERT_NE(filter, nullptr);
    EXPECT_FALSE(filter->matches(1));
    EXPECT_TRUE(filter->matches(2));
    EXPECT_EQ(review_.rowForTyping("b", 0, [](std::size_t /*row*/) { return true; }), 2U);
}

TEST_F(ReviewControllerTest, ReadsOutWhomARowIsAboutAndItsWarning)
{
    searchIn({person("1", "Ann"), named("2", "Ann"), named("3", "Ben"), named("4", "Ben")});

    EXPECT_EQ(review_.styleOfRow(0).accessibleText, "Ann Lee, copy 1 of 2, kept");
    EXPECT_EQ(review_.styleOfRow(1).accessibleText, "Ann Lee, copy 2 of 2, marked for deletion");
    EXPECT_EQ(review_.styleOfRow(2).accessibleText,
              "Ben Lee, copy 1 of 2, marked for deletion. " + std::string(kLossText));
    EXPECT_EQ(review_.styleOfRow(99).accessibleText, "");
}

TEST_F(ReviewControllerTest, SuppliesTheTextsOfTheTable)
{
    EXPECT_EQ(review_.countText(0, 3), "No matches: 0 of 3 match");
    EXPECT_EQ(review_.accessibleCellText("Home", std::nullopt), "Home: not shown yet");
}

TEST_F(ReviewControllerTest, GivesTheRowsOfAGroupOneNumber)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben")});

    EXPECT_EQ(review_.styleOfRow(0).group, review_.styleOfRow(1).group);
    EXPECT_NE(review_.styleOfRow(1).group, review_.styleOfRow(2).group);
    EXPECT_EQ(review_.styleOfRow(2).group, review_.styleOfRow(3).group);
    EXPECT_EQ(review_.styleOfRow(0).warning.sign, Sign::None);
    EXPECT_EQ(review_.styleOfRow(0).warning.text, "");
}

TEST_F(ReviewControllerTest, HasASentenceForEachWarning)
{
    auto withPhone = nobody("3");
    withPhone.phones = person("3", "").phones;
    searchIn({named("1", "Ann"), named("2", "Ann"), withPhone, nobody("4")});

    const auto loss = review_.styleOfRow(1).warning;
    EXPECT_EQ(loss.sign, Sign::Loss);
    EXPECT_EQ(loss.text, kLossText);
    const auto doubt = review_.styleOfRow(3).warning;
    EXPECT_EQ(doubt.sign, Sign::Doubt);
    EXPECT_EQ(doubt.text, kDoubtText);
    EXPECT_EQ(titleOf("btnLastCopies"), "1 person would lose every copy");
    EXPECT_EQ(titleOf("btnEmptyFields"), "2 people share only empty fields");
}

TEST_F(ReviewControllerTest, ShowsTheWorseSignAndBothSentencesWhenBothApply)
{
    searchIn({nobody("1"), nobody("2")});

    const auto both = review_.styleOfRow(0).warning;
    EXPECT_EQ(both.sign, Sign::Loss);
    EXPECT_EQ(both.text, std::string(kLossText) + " " + kDoubtText);
}

TEST_F(ReviewControllerTest, HasAStyleForARowThatDoesNotExist)
{
    searchIn({named("1", "Ann"), named("2", "Ann")});

    EXPECT_EQ(review_.styleOfRow(99).warning.sign, Sign::None);
}

TEST_F(ReviewControllerTest, CountsAfterEveryEdit)
{
    searchIn({named("1", "Ann"), named("2", "Ann"), named("3", "Ben"), named("4", "Ben")});
    EXPECT_EQ(titleOf("btnLastCopies"), "2 people would lose every copy");
    log_.clear();

    toggle({0});
    EXPECT_EQ(titleOf("btnLastCopies"), "1 person would lose every copy");
    EXPECT_EQ(review_.styleOfRow(1).warning.sign, Sign::None);
    EXPECT_EQ(calls(), (Calls{"MainWindow.txtChecked setStringValue 3 checked",
                              "MainWindow.tableContacts setNeedsDisplay"}));

    toggle({2, 3});
    EXPECT_EQ(titleOf("btnLastCopies"), "");

    toggle({0, 2, 3});
    EXPECT_EQ(titleOf("btnLastCopies"), "2 people would lose every copy");
}

TEST_F(ReviewControllerTest, CountsByTheFieldsOfTheSearchAfterADeletion)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben")});
    Settings::settings().setFilterFirstname(false);

    main_.command("OnDelete").use();
    finishJobs();
    toggle({0, 1});

    EXPECT_EQ(titleOf("btnLastCopies"), "2 people would lose every copy");
}

TEST_F(ReviewControllerTest, RedrawsWithWarningsOnceAllJobsHaveEnded)
{
    bookHolds({named("1", "Ann"), named("2", "Ann")});
    main_.command("OnReload").use();
    application_.runUntilIdle();
    // The table may be drawn before the groups have been counted.
    EXPECT_EQ(review_.styleOfRow(0).warning.sign, Sign::None);
    log_.clear();

    finishJobs();

    EXPECT_EQ(review_.styleOfRow(0).warning.sign, Sign::Loss);
    EXPECT_EQ(calls(), (Calls{"MainWindow.txtChecked setStringValue 2 checked",
                              "MainWindow.tableContacts setNeedsDisplay"}));
}

TEST_F(ReviewControllerTest, ReadsNoCheckMarkWhileAJobRuns)
{
    searchIn({named("1", "Ann"), named("2", "Ann")});
    main_.command("OnDelete").use();
    log_.clear();

    review_.rowsEdited(std::vector<std::size_t>{0, 1});

    EXPECT_EQ(std::ranges::count(calls(), "MainWindow.tableContacts setNeedsDisplay"), 0);
    EXPECT_EQ(titleOf("btnLastCopies"), "");
    finishJobs();
}

TEST_F(ReviewControllerTest, KeepsOneOfEachGroupThatWouldLoseAll)
{
    searchIn({named("1", "Ann"), named("2", "Ann"), person("3", "Ben"), person("4", "Ben"),
              named("5", "Cid"), named("6", "Cid")});
    log_.clear();

    main_.command("OnKeepOneOfEach").use();

    EXPECT_EQ(marks(), "-x-x-x");
    EXPECT_EQ(titleOf("btnLastCopies"), "");
    EXPECT_EQ(calls()[0], "MainWindow.txtChecked setStringValue 3 checked");
    EXPECT_EQ(calls()[1], "MainWindow.tableContacts setNeedsDisplay");

    // A second time it finds no such group and changes nothing.
    main_.command("OnKeepOneOfEach").use();
    EXPECT_EQ(contacts_.objectValue("check", 1), CellValue(true));
    EXPECT_EQ(contacts_.objectValue("check", 0), CellValue(false));
}

TEST_F(ReviewControllerTest, ShowsWhatOnlyOneCopyHoldsAfterASearchAndAfterADeletion)
{
    auto other = person("2", "Ann");
    other.properties.push_back({"EMAIL", "", {"ann@example.com"}, std::nullopt});
    searchIn({withMobile(person("1", "Ann")), other, person("3", "Ben"), person("4", "Ben")});
    const std::size_t unique = review_.styleOfRow(0).warning.sign == Sign::OnlyHere ? 0 : 1;

    EXPECT_EQ(review_.styleOfRow(unique).warning.sign, Sign::OnlyHere);
    EXPECT_EQ(review_.styleOfRow(unique).warning.text, kOnlyHere);
    EXPECT_EQ(review_.wholeWarning(unique).find("Only here: "), 0U);
    EXPECT_NE(titleOf("btnOnlyHere"), "");

    toggle({unique, 2, 3});
    EXPECT_EQ(titleOf("btnOnlyHere"), "");
}

TEST_F(ReviewControllerTest, FiltersTheRowsThatNeedALook)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), named("3", "Ben"), named("4", "Ben")});
    ASSERT_EQ(titleOf("btnLastCopies"), "1 person would lose every copy");
    EXPECT_EQ(review_.rowFilter(""), nullptr);
    EXPECT_TRUE(main_.button("btnAllRows").isHidden);

    main_.command("OnNeedsLook").use();
    const auto filter = review_.rowFilter("");
    ASSERT_NE(filter, nullptr);
    EXPECT_FALSE(filter->matches(0));
    EXPECT_TRUE(filter->matches(2));
    EXPECT_TRUE(main_.command("OnNeedsLook").isChecked);
    EXPECT_FALSE(main_.button("btnAllRows").isHidden);
    EXPECT_EQ(calls().back(), "MainWindow.tableContacts refilter");

    main_.command("OnNeedsLook").use();
    EXPECT_EQ(review_.rowFilter(""), nullptr);
    EXPECT_FALSE(main_.command("OnNeedsLook").isChecked);
}

TEST_F(ReviewControllerTest, FiltersNoRowsDuringAJob)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    EXPECT_TRUE(areEnabled({"OnNeedsLook"}, true));

    review_.jobsBegan(kThreadFindDuplicates);
    EXPECT_TRUE(areEnabled({"OnNeedsLook"}, false));
}

TEST_F(ReviewControllerTest, KeepsTheUsersMarksWhenTheBookIsReadAgain)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben")});
    toggle({0, 3});

    search();

    EXPECT_EQ(marks(), "xx--");
    EXPECT_EQ(main_.textField("txtResult").stringValue, "2 check marks kept.");
    EXPECT_EQ(titleOf("btnLastCopies"), "1 person would lose every copy");
}

TEST_F(ReviewControllerTest, KeepsTheUsersMarksWhenADeletionFails)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben")});
    toggle({2, 3});
    review_.jobsBegan(kThreadDeleteCheckedContacts);
    ContactsParser::parser().reset();
    review_.jobFailed(kThreadDeleteCheckedContacts);

    jobsRun_ = true;
    contacts_.OnReload(nullptr);
    finishJobs();

    EXPECT_EQ(marks(), "-xx-");
}

TEST_F(ReviewControllerTest, ForgetsTheUsersMarksWhenAnotherBookIsOpened)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    toggle({0});
    ContactsParser::parser().reset();

    review_.setBookIsOpen(true);
    search();

    EXPECT_EQ(marks(), "-x");
}

TEST_F(ReviewControllerTest, RestoresTheMarksFromBeforeADeletion)
{
    const std::vector<FakePerson> people{person("1", "Ann"), person("2", "Ann"), person("3", "Ben"),
                                         person("4", "Ben"), person("5", "Ben")};
    searchIn(people);
    toggle({0, 1, 4});
    main_.command("OnDelete").use();
    finishJobs();
    ASSERT_EQ(marks(), "---") << "the second Ann, and the first and the third Ben";

    bookHolds(people);
    main_.command("OnReload").use();
    review_.restoreMarksBeforeDeletion();
    finishJobs();

    EXPECT_EQ(marks(), "x--x-");
}

TEST_F(ReviewControllerTest, RestoresNoMarksFromBeforeADeletionThatFailed)
{
    const std::vector<FakePerson> people{person("1", "Ann"), person("2", "Ann"), person("3", "Ben"),
                                         person("4", "Ben"), person("5", "Ben")};
    searchIn(people);
    toggle({0, 1});
    main_.command("OnDelete").use();
    finishJobs();
    bookHolds(people);
    search();
    review_.jobsBegan(kThreadDeleteCheckedContacts);
    ContactsParser::parser().reset();
    review_.jobFailed(kThreadDeleteCheckedContacts);
    jobsRun_ = true;
    contacts_.OnReload(nullptr);
    finishJobs();
    ASSERT_EQ(marks(), "-x-xx");

    main_.command("OnReload").use();
    review_.restoreMarksBeforeDeletion();
    finishJobs();

    EXPECT_EQ(marks(), "-x-xx") << "it may have removed people, which are restored first";
}

TEST_F(ReviewControllerTest, ShowsTheRowsOfAGroupTogether)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben"),
              person("5", "Ben")});

    EXPECT_EQ(review_.rowsTogetherWith(1), (RowRange{0, 2}));
    EXPECT_EQ(review_.rowsTogetherWith(3), (RowRange{2, 3}));
    EXPECT_EQ(review_.rowsTogetherWith(5), (RowRange{5, 1}));
}

TEST_F(ReviewControllerTest, ForwardsTheFilterToTheTable)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    log_.clear();

    main_.command("OnFilter").use();

    EXPECT_EQ(calls(), Calls{"MainWindow.tableContacts beginFiltering"});
}

TEST_F(ReviewControllerTest, LeavesEverythingAsItWasWhenADeletionIsCancelled)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    theUserPresses({Alert::kAlternateButton});
    log_.clear();

    main_.command("OnDelete").use();

    EXPECT_EQ(alerts(), Calls{"Confirm to delete"});
    EXPECT_EQ(calls(), Calls{});
}

TEST_F(ReviewControllerTest, ClosesTheFilterAfterADeletion)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    log_.clear();

    main_.command("OnDelete").use();
    EXPECT_FALSE(hasClosedTheFilter());
    finishJobs();

    EXPECT_TRUE(hasClosedTheFilter());
}

TEST_F(ReviewControllerTest, AsksBeforeADeletionTakesTheLastCopy)
{
    searchIn({named("1", "Ann"), named("2", "Ann"), person("3", "Ben"), person("4", "Ben")});
    theUserPresses({Alert::kAlternateButton});

    main_.command("OnDelete").use();

    EXPECT_EQ(alerts(), Calls{"1 person would be deleted completely"});
    EXPECT_EQ(marks(), "xx-x");
    EXPECT_FALSE(jobsRun_);
}

TEST_F(ReviewControllerTest, DeletesTheLastCopyWhenTheUserInsists)
{
    searchIn({named("1", "Ann"), named("2", "Ann")});
    theUserPresses({Alert::kOtherButton, Alert::kDefaultButton});

    main_.command("OnDelete").use();
    finishJobs();

    EXPECT_EQ(alerts(), (Calls{"1 person would be deleted completely", "Confirm to delete"}));
    EXPECT_TRUE(platform_.addressBook.storedUids().empty());
}

TEST_F(ReviewControllerTest, LeavesOutWhatIsDoubtfulEvenIfTheConfirmationIsCancelled)
{
    searchIn({named("1", "Ann"), named("2", "Ann"), nobody("3"), nobody("4"), person("5", "Ben"),
              person("6", "Ben")});
    theUserPresses({Alert::kDefaultButton, Alert::kAlternateButton});

    main_.command("OnDelete").use();

    EXPECT_EQ(alerts(), (Calls{"2 people would be deleted completely", "Confirm to delete"}));
    EXPECT_EQ(marks(), "-x---x");
    EXPECT_EQ(titleOf("btnLastCopies"), "");
    EXPECT_EQ(main_.textField("txtChecked").stringValue, "2 checked");
}

TEST_F(ReviewControllerTest, SaysThatNobodyIsCheckedWhenEveryoneIsLeftOut)
{
    searchIn({nobody("1"), nobody("2")});

    main_.command("OnDelete").use();

    EXPECT_EQ(alerts(),
              (Calls{"1 person would be deleted completely", "No contact checked to be deleted!"}));
    EXPECT_FALSE(jobsRun_);
}

TEST_F(ReviewControllerTest, LeavesOutACheckedPersonWhoIsInNoRow)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben")});
    ContactsParser::parser().contacts().find("3")->setObject(true, kContactCheck);
    theUserPresses({Alert::kDefaultButton, Alert::kAlternateButton});

    main_.command("OnDelete").use();

    EXPECT_EQ(alerts(), (Calls{"1 person would be deleted completely", "Confirm to delete"}));
    EXPECT_EQ(checkedUids(ContactsParser::parser()), Calls{"2"});
    EXPECT_EQ(main_.textField("txtChecked").stringValue, "1 checked");
}

TEST_F(ReviewControllerTest, ShowsHowManyPeopleADeletionWouldRemove)
{
    EXPECT_TRUE(main_.textField("txtChecked").isHidden);
    EXPECT_EQ(main_.command("OnDelete").title, "Delete Checked…");

    searchIn({named("1", "Ann"), named("2", "Ann"), person("3", "Ben"), person("4", "Ben")});
    EXPECT_FALSE(main_.textField("txtChecked").isHidden);
    EXPECT_EQ(main_.textField("txtChecked").stringValue, "3 checked");
    EXPECT_EQ(main_.command("OnDelete").title, "Delete 3 Checked…");

    toggle({0, 1, 3});
    EXPECT_EQ(main_.textField("txtChecked").stringValue, "0 checked");
    EXPECT_EQ(main_.command("OnDelete").title, "Delete Checked…");

    toggle({0});
    main_.command("OnDelete").use();
    EXPECT_EQ(main_.textField("txtChecked").stringValue, "1 checked");
    finishJobs();
    EXPECT_EQ(main_.textField("txtChecked").stringValue, "0 checked");

    main_.command("OnReload").use();
    EXPECT_TRUE(main_.textField("txtChecked").isHidden);
    finishJobs();
}

TEST_F(ReviewControllerTest, ClosesTheFilterForANewSearch)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});
    log_.clear();

    search();

    EXPECT_TRUE(hasClosedTheFilter());
}

TEST_F(ReviewControllerTest, JumpsFromWarningToWarning)
{
    searchIn({named("1", "Ann"), named("2", "Ann"), nobody("3"), nobody("4"), named("5", "Cid"),
              named("6", "Cid")});
    toggle({2});

    main_.command("OnNextLastCopy").use();
    EXPECT_EQ(table().selected, 0U);
    main_.command("OnNextLastCopy").use();
    EXPECT_EQ(table().selected, 4U);
    main_.command("OnNextLastCopy").use();
    EXPECT_EQ(table().selected, 0U);
    main_.command("OnNextEmptyFields").use();
    EXPECT_EQ(table().selected, 2U);
    table().selected = 3;
    main_.command("OnNextLastCopy").use();
    EXPECT_EQ(table().selected, 4U);
}

TEST_F(ReviewControllerTest, JumpsNowhereWithoutAWarning)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});

    main_.command("OnNextLastCopy").use();
    main_.command("OnNextEmptyFields").use();

    EXPECT_EQ(table().selected, std::nullopt);
}

TEST_F(ReviewControllerTest, ReadsTheBookThatTheUserOpens)
{
    main_.command("OnOpen").use();
    finishJobs();
    EXPECT_EQ(application_.threads.front(), kThreadLoadContacts);

    const auto jobs = application_.threads.size();
    choosesABook_ = false;
    main_.command("OnOpen").use();
    EXPECT_EQ(application_.threads.size(), jobs);
}

TEST_F(ReviewControllerTest, ReadsTheFolderThatTheUserOpens)
{
    main_.command("OnOpenFolder").use();
    finishJobs();
    EXPECT_EQ(application_.threads.front(), kThreadLoadContacts);
    EXPECT_EQ(kindsOpened_, std::vector{OpenPanel::Kind::Folder});

    const auto jobs = application_.threads.size();
    choosesABook_ = false;
    main_.command("OnOpenFolder").use();
    EXPECT_EQ(application_.threads.size(), jobs);
}

TEST_F(ReviewControllerTest, ShowsTheNotesOfTheLastReading)
{
    platform_.addressBook.readingNotes = {3, {"Two of “a.vcf”.", "One of “b.vcf”."}};
    searchIn({person("1", "Ann")});
    EXPECT_EQ(titleOf("btnNotes"), "3 cards were skipped");

    main_.command("OnNotes").use();

    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    const auto& alert = platform_.alert.shown.front();
    EXPECT_EQ(alert.messageText, "3 cards were skipped");
    EXPECT_EQ(alert.informativeText, "Two of “a.vcf”.\nOne of “b.vcf”.");
    EXPECT_EQ(alert.defaultButton, "OK");
    EXPECT_EQ(alert.alternateButton, std::nullopt);
}

TEST_F(ReviewControllerTest, ShowsTheOnlyRemarkItself)
{
    platform_.addressBook.readingNotes = {1, {"1 card in “a.vcf” was skipped."}};
    searchIn({person("1", "Ann")});
    EXPECT_EQ(titleOf("btnNotes"), "1 card in “a.vcf” was skipped.");

    platform_.addressBook.readingNotes = {0, {"“a.vcf” holds no vCard."}};
    search();
    EXPECT_EQ(titleOf("btnNotes"), "“a.vcf” holds no vCard.");

    main_.command("OnNotes").use();

    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    EXPECT_EQ(platform_.alert.shown.front().messageText, "1 remark about the address book");
    EXPECT_EQ(platform_.alert.shown.front().informativeText, "“a.vcf” holds no vCard.");
}

TEST_F(ReviewControllerTest, CountsSeveralRemarksWhereNoCardWasSkipped)
{
    platform_.addressBook.readingNotes = {0, {"“a.vcf” holds no vCard."}};
    searchIn({person("1", "Ann")});

    platform_.addressBook.readingNotes.remarks.emplace_back("“b.vcf” was left out.");
    search();
    EXPECT_EQ(titleOf("btnNotes"), "2 remarks about the address book");

    platform_.addressBook.readingNotes = {};
    search();
    EXPECT_EQ(titleOf("btnNotes"), "");
    main_.command("OnNotes").use();
    EXPECT_TRUE(platform_.alert.shown.empty());
}

TEST_F(ReviewControllerTest, ShowsTheNotesUntilTheNextLoad)
{
    platform_.addressBook.readingNotes = {1, {}};
    searchIn({person("1", "Ann"), person("2", "Ann")});
    ASSERT_EQ(titleOf("btnNotes"), "1 card was skipped");

    main_.command("OnReload").use();

    EXPECT_EQ(titleOf("btnNotes"), "");
    finishJobs();
    EXPECT_EQ(titleOf("btnNotes"), "1 card was skipped");
}

TEST_F(ReviewControllerTest, ShowsNoNotesWithoutABook)
{
    platform_.addressBook.readingNotes.cardsSkipped = 1;
    searchIn({person("1", "Ann")});
    platform_.platform.addressBook = nullptr;

    review_.jobsBegan(kThreadFindDuplicates);
    review_.jobsEnded();

    EXPECT_EQ(titleOf("btnNotes"), "");
}

TEST_F(ReviewControllerTest, IgnoresJobsAfterItIsDestroyed)
{
    {
        FakeInterface other("Other", log_);
        ReviewController review(other, contacts_, [](OpenPanel::Kind /*kind*/) { return false; });
        review.awakeFromNib();
    }

    searchIn({person("1", "Ann"), person("2", "Ann")});

    EXPECT_EQ(emptiness(), "");
}

}  // namespace
}  // namespace dunmora::test
