#include "ui/MarkCommands.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/People.h"

#include <utility>

namespace dunmora::test {
namespace {

using Rows = std::vector<std::size_t>;

class MarkCommandsTest : public DesktopTest {
protected:
    void searchIn(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        search();
    }

    void search()
    {
        commands_.jobsBegan();
        auto& engine = ContactsParser::parser();
        engine.load();
        engine.findDupes();
        groups_.update(engine);
        table().rows = engine.duplicates().size();
        changes_.clear();
        commands_.jobsEnded(MarkCommands::After::Search);
    }

    /// Two copies of Ann, three of Ben and two people whose compared fields are empty.
    void searchInThreeGroups()
    {
        searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben"),
                  person("5", "Ben"), named("6", "", ""), named("7", "", "")});
        ASSERT_EQ(marks(), "-x-xxxx");
    }

    /// Does what the table does when the user toggles these rows in one step.
    void toggle(const Rows& rows)
    {
        for (const auto row : rows) {
            auto& engine = ContactsParser::parser();
            auto& contact = *engine.contacts().find(engine.duplicates()[row]);
            contact.setObject(!contact.isChecked(), kContactCheck);
        }
        commands_.edited(rows);
    }

    /// Ends a deletion that has changed nothing.
    void endDeletion()
    {
        commands_.keepMarks();
        commands_.jobsBegan();
        commands_.jobsEnded(MarkCommands::After::Deletion);
    }

    void use(const std::string& command) { main_.command(command).use(); }
    bool isEnabled(const std::string& command) { return main_.command(command).isEnabled; }
    std::string result() { return main_.textField("txtResult").stringValue; }
    FakeTableView& table() { return main_.tableView("tableContacts"); }

    /// One letter for each row: x for a checked one.
    static std::string marks()
    {
        std::string marks;
        auto& engine = ContactsParser::parser();
        for (const auto& uid : engine.duplicates()) {
            marks += engine.contacts().find(uid)->isChecked() ? 'x' : '-';
        }
        return marks;
    }

    FakeInterface main_{"MainWindow", log_};
    GroupWarnings groups_;
    /// The rows that were reported as changed, step by step.
    std::vector<Rows> changes_;
    std::uint64_t cardHash_ = 1;
    MarkCommands commands_{main_, groups_, [this](std::size_t /*row*/) { return cardHash_; },
                           [this](std::span<const std::size_t> rows) {
                               groups_.rowsEdited(ContactsParser::parser(), rows);
                               changes_.emplace_back(rows.begin(), rows.end());
                           }};
};

TEST_F(MarkCommandsTest, AreDisabledWithoutRowsAndDuringAJob)
{
    const std::vector<std::string> commands{
        "OnRestoreProposal", "OnCheckSelected", "OnUncheckSelected",    "OnCheckShown",
        "OnUncheckShown",    "OnKeepOneOfEach", "OnUncheckEmptyFields", "OnKeepOnly",
        "OnKeepAll",         "OnNextGroup",     "OnPreviousGroup"};
    const auto expectEnabled = [&](bool enabled) {
        for (const auto& command : commands) {
            EXPECT_EQ(isEnabled(command), enabled) << command;
        }
    };
    expectEnabled(false);

    searchIn({person("1", "Ann"), person("2", "Ann")});
    expectEnabled(true);

    commands_.jobsBegan();
    expectEnabled(false);

    searchIn({person("1", "Ann")});
    expectEnabled(false);
}

TEST_F(MarkCommandsTest, UndoAndRedoWhatTheUserDidInTheTable)
{
    searchInThreeGroups();
    EXPECT_FALSE(isEnabled("OnUndoMarks"));
    toggle({0, 1, 2, 3, 4});
    toggle({0});
    ASSERT_EQ(marks(), "--x--xx");
    EXPECT_TRUE(isEnabled("OnUndoMarks"));
    EXPECT_FALSE(isEnabled("OnRedoMarks"));

    use("OnUndoMarks");
    use("OnUndoMarks");

    EXPECT_EQ(marks(), "-x-xxxx");
    EXPECT_EQ(changes_, (std::vector<Rows>{{0, 1, 2, 3, 4}, {0}, {0}, {0, 1, 2, 3, 4}}));
    EXPECT_FALSE(isEnabled("OnUndoMarks"));
    EXPECT_TRUE(isEnabled("OnRedoMarks"));

    use("OnRedoMarks");
    EXPECT_EQ(marks(), "x-x--xx");
    EXPECT_TRUE(isEnabled("OnRedoMarks"));
}

TEST_F(MarkCommandsTest, UndoOneCommandInOneStep)
{
    searchInThreeGroups();
    table().selected = 4;

    use("OnKeepOnly");
    ASSERT_EQ(marks(), "-xxx-xx");
    use("OnUncheckEmptyFields");
    ASSERT_EQ(marks(), "-xxx---");
    use("OnUndoMarks");
    EXPECT_EQ(marks(), "-xxx-xx");
    use("OnUndoMarks");
    EXPECT_EQ(marks(), "-x-xxxx");
}

TEST_F(MarkCommandsTest, StartWithAnEmptyHistoryAfterASearchAndAfterADeletion)
{
    searchInThreeGroups();
    toggle({0});
    commands_.jobsBegan();
    EXPECT_FALSE(isEnabled("OnUndoMarks"));

    commands_.jobsEnded(MarkCommands::After::Deletion);
    EXPECT_FALSE(isEnabled("OnUndoMarks"));

    toggle({0});
    searchInThreeGroups();
    EXPECT_FALSE(isEnabled("OnUndoMarks"));
}

TEST_F(MarkCommandsTest, RestoreTheProposalInOneStep)
{
    searchInThreeGroups();
    toggle({0, 1});
    toggle({5});

    use("OnRestoreProposal");
    EXPECT_EQ(marks(), "-x-xxxx");

    use("OnUndoMarks");
    EXPECT_EQ(marks(), "x--xx-x");
}

TEST_F(MarkCommandsTest, KeepOnlyTheSelectedCopyOrAllOfItsGroup)
{
    searchInThreeGroups();
    table().selected = 3;

    use("OnKeepOnly");
    EXPECT_EQ(marks(), "-xx-xxx");
    EXPECT_EQ(result(), "Checked 1 person and unchecked 1.");

    use("OnKeepAll");
    EXPECT_EQ(marks(), "-x---xx");
    EXPECT_EQ(result(), "Unchecked 2 people.");
}

TEST_F(MarkCommandsTest, ChangeNoGroupWithoutASelectedRow)
{
    searchInThreeGroups();

    use("OnKeepOnly");
    use("OnKeepAll");

    EXPECT_EQ(marks(), "-x-xxxx");
    EXPECT_EQ(result(), "No check mark has changed.");
    EXPECT_FALSE(isEnabled("OnUndoMarks"));
}

TEST_F(MarkCommandsTest, KeepOneOfEachAndThoseWhoMatchOnlyByEmptyFields)
{
    searchInThreeGroups();
    toggle({0});

    use("OnKeepOneOfEach");
    EXPECT_EQ(marks(), "-x-xx-x");

    use("OnUncheckEmptyFields");
    EXPECT_EQ(marks(), "-x-xx--");
}

TEST_F(MarkCommandsTest, EditTheSelectedAndTheShownRowsThroughTheTable)
{
    searchInThreeGroups();
    log_.clear();

    use("OnCheckSelected");
    use("OnUncheckSelected");
    use("OnCheckShown");
    use("OnUncheckShown");

    Calls edits;
    for (const auto& call : calls()) {
        if (call.find(" edit") != std::string::npos) {
            edits.push_back(call);
        }
    }
    EXPECT_EQ(edits, (Calls{"MainWindow.tableContacts editSelectedRows check 1",
                            "MainWindow.tableContacts editSelectedRows check 0",
                            "MainWindow.tableContacts editShownRows check 1",
                            "MainWindow.tableContacts editShownRows check 0"}));
}

TEST_F(MarkCommandsTest, MoveFromGroupToGroupAround)
{
    searchInThreeGroups();

    std::vector<std::optional<std::size_t>> selected;
    for (int i = 0; i < 4; ++i) {
        use("OnNextGroup");
        selected.push_back(table().selected);
    }
    EXPECT_EQ(selected, (std::vector<std::optional<std::size_t>>{0, 2, 5, 0}));

    selected.clear();
    for (int i = 0; i < 3; ++i) {
        use("OnPreviousGroup");
        selected.push_back(table().selected);
    }
    EXPECT_EQ(selected, (std::vector<std::optional<std::size_t>>{5, 2, 0}));
}

TEST_F(MarkCommandsTest, MoveToTheLastGroupFromNowhere)
{
    searchInThreeGroups();

    use("OnPreviousGroup");

    EXPECT_EQ(table().selected, 5U);
}

TEST_F(MarkCommandsTest, MoveOnlyToGroupsThatAreShown)
{
    searchInThreeGroups();
    table().selected = 1;
    table().hiddenRows = {2, 3, 4};

    use("OnNextGroup");
    EXPECT_EQ(table().selected, 5U);

    table().hiddenRows = {0, 1, 2, 3, 4, 5, 6};
    use("OnNextGroup");
    EXPECT_EQ(table().selected, 5U);
}

TEST_F(MarkCommandsTest, KeepTheUsersMarksInAnotherSearch)
{
    searchInThreeGroups();
    toggle({0, 3});
    commands_.keepMarks();

    search();

    EXPECT_EQ(marks(), "xx--xxx");
    EXPECT_EQ(changes_, (std::vector<Rows>{{0, 3}}));
    EXPECT_EQ(result(), "2 check marks kept.");
    EXPECT_FALSE(isEnabled("OnUndoMarks"));

    use("OnRestoreProposal");
    EXPECT_EQ(marks(), "-x-xxxx");
}

TEST_F(MarkCommandsTest, KeepTheUsersMarksUntilASearchSucceeds)
{
    searchInThreeGroups();
    toggle({0});
    commands_.keepMarks();
    commands_.jobsBegan();
    ContactsParser::parser().reset();
    groups_.update(ContactsParser::parser());
    commands_.jobsEnded(MarkCommands::After::Nothing);
    commands_.keepMarks();

    search();
    EXPECT_EQ(marks(), "xx-xxxx");

    search();
    EXPECT_EQ(marks(), "-x-xxxx") << "they are restored once";
}

TEST_F(MarkCommandsTest, ReportMarksThatCannotBeKept)
{
    searchInThreeGroups();
    toggle({0});
    commands_.keepMarks();
    cardHash_ = 2;

    search();

    EXPECT_EQ(marks(), "-x-xxxx");
    EXPECT_EQ(result(), "1 check mark not kept: their groups have changed.");
}

TEST_F(MarkCommandsTest, RestoreTheMarksFromBeforeEachDeletionTheLastOneFirst)
{
    searchInThreeGroups();
    toggle({0});
    endDeletion();
    toggle({2});
    endDeletion();

    search();
    EXPECT_EQ(marks(), "-x-xxxx") << "the deletions have used the marks up";

    commands_.keepMarksBeforeDeletion();
    search();
    EXPECT_EQ(marks(), "xxxxxxx");

    commands_.keepMarksBeforeDeletion();
    search();
    EXPECT_EQ(marks(), "xx-xxxx");

    commands_.keepMarksBeforeDeletion();
    search();
    EXPECT_EQ(marks(), "-x-xxxx");
}

TEST_F(MarkCommandsTest, ForgetTheMarksOfAnotherBook)
{
    searchInThreeGroups();
    toggle({0});
    endDeletion();
    commands_.keepMarks();

    commands_.forgetMarks();

    search();
    EXPECT_EQ(marks(), "-x-xxxx");
    commands_.keepMarksBeforeDeletion();
    search();
    EXPECT_EQ(marks(), "-x-xxxx");
}

TEST_F(MarkCommandsTest, ForgetTheMarksBeforeDeletionsThatCannotBeToldApart)
{
    searchInThreeGroups();
    toggle({0});
    endDeletion();

    commands_.forgetMarksBeforeDeletions();

    commands_.keepMarks();
    commands_.keepMarksBeforeDeletion();
    search();
    EXPECT_EQ(marks(), "xx-xxxx") << "the current ones are kept instead";
}

TEST_F(MarkCommandsTest, AskBeforeChangesAreLost)
{
    std::vector<std::string> questions;
    int answer = Alert::kAlternateButton;
    platform_.alert.onRunModal = [&](const AlertContent& content) {
        questions.push_back(content.informativeText);
        return answer;
    };
    searchInThreeGroups();
    EXPECT_TRUE(commands_.mayLoseMarks());
    EXPECT_TRUE(questions.empty());

    toggle({0});
    EXPECT_FALSE(commands_.mayLoseMarks());
    EXPECT_EQ(questions, (std::vector<std::string>{
                             "You have changed 1 check mark in this one. The changes will be "
                             "lost."}));

    answer = Alert::kDefaultButton;
    EXPECT_TRUE(commands_.mayLoseMarks());
}

TEST_F(MarkCommandsTest, ShowTheirResultUntilTheNextEdit)
{
    searchInThreeGroups();
    toggle({0});
    EXPECT_EQ(result(), "");

    use("OnUndoMarks");
    EXPECT_EQ(result(), "Unchecked 1 person.");

    toggle({2});
    EXPECT_EQ(result(), "");

    use("OnRestoreProposal");
    commands_.jobsBegan();
    EXPECT_EQ(result(), "");
}

}  // namespace
}  // namespace dunmora::test
