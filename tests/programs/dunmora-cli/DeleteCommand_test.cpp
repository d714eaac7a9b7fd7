#include "platform/PlatformError.h"
#include "tests/fakes/FakeCard.h"
#include "tests/programs/dunmora-cli/CliTest.h"
#include "tests/programs/dunmora-cli/ClosedPipe.h"
#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <new>
#include <span>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;

constexpr auto kQuestion = "1 person will be deleted from “book.vcf”.\n"
                           "Confirm to delete\n"
                           "The checked contacts will be deleted from Address Book. \n"
                           "Do you really want to continue?\n"
                           "Okay/Cancel [y/N] ";

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class DeleteTest : public CliTest {
protected:
    void expectUnchanged() const
    {
        EXPECT_EQ(book_.savesAsked(), 0U);
        EXPECT_EQ(book_.writes(), 0U);
    }

    /// Whether the program asked before it continued.
    bool asked() const { return err().find("Confirm to delete") != std::string::npos; }

    TemporaryFolder folder_;
};

TEST_F(DeleteTest, DeletesTheCheckedCopiesAndSavesOnce)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "book.vcf", "--yes"}), 0);

    EXPECT_EQ(book_.storedUids(), (Uids{"ann-1", "ben"}));
    EXPECT_EQ(book_.writes(), 1U);
    EXPECT_EQ(err(), "");
    EXPECT_NE(out().find("[x]  Ann         Lee"), std::string::npos) << out();
    EXPECT_TRUE(out().ends_with("ann-2\n\n1 person deleted.\n1 duplicates of 2\n")) << out();
}

TEST_F(DeleteTest, PrintsExactlyThisJson)
{
    bookHolds({withMobile(named("a1", "Ann")), named("b1", "Ben"), named("b2", "Ben"),
               named("a2", "Ann"), named("c", "Cid")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--format", "json", "--uncheck", "b1"}), 0);
    EXPECT_EQ(out(), R"({"schema":1,"dryRun":false,"deleted":["b2","a2"],)"
                     R"("contacts":3,"duplicates":2,"remarks":[],"warnings":{"loses_every_copy":0,)"
                     R"("shares_only_empty_fields":0,"only_here":0},"rows":[)"
                     R"({"uid":"b2","warnings":[],"only_here":[]},)"
                     R"({"uid":"a2","warnings":[],"only_here":[]}]})"
                     "\n");
    EXPECT_EQ(err(), "");
}

TEST_F(DeleteTest, PrintsTheWarningsInJsonAsTheyWereBeforeTheDeletion)
{
    auto unique = named("2", "", "");
    unique.properties = {{"EMAIL", "", {"two@example.org"}, {}}};
    bookHolds({named("1", "", ""), unique, withMobile(named("3", "Ann")), named("4", "Ann"),
               named("5", "Cid")});
    book_.readingNotes.remarks = {"1 card was skipped."};

    for (const std::string dryRun : {"--dry-run", "--yes"}) {
        EXPECT_EQ(run({"delete", "b", dryRun, "--format", "json", "--quiet", "--check", "5",
                       "--allow-last-copy", "--allow-blank-match"}),
                  0);
        EXPECT_EQ(jsonAt(out(), "/remarks"), R"(["1 card was skipped."])");
        EXPECT_EQ(jsonAt(out(), "/warnings"),
                  R"({"loses_every_copy":2,"shares_only_empty_fields":2,"only_here":1})");
        EXPECT_EQ(jsonAt(out(), "/rows/0"),
                  R"({"uid":"1","warnings":["loses_every_copy","shares_only_empty_fields"],)"
                  R"("only_here":[]})");
        EXPECT_EQ(jsonAt(out(), "/rows/1/only_here"),
                  R"([{"property":"EMAIL","value":"two@example.org"}])");
        EXPECT_EQ(jsonAt(out(), "/rows/2"), R"({"uid":"4","warnings":[],"only_here":[]})");
        EXPECT_EQ(jsonAt(out(), "/rows/3/warnings"), R"(["loses_every_copy"])");
    }
}

TEST_F(DeleteTest, CountsInJsonOnlyTheCheckedWhoShareOnlyEmptyFields)
{
    bookHolds({named("1", "", ""), named("2", "", ""), named("3", "", "")});

    EXPECT_EQ(
        run({"delete", "b", "--yes", "--format", "json", "--keep-one", "--allow-blank-match"}), 0);
    EXPECT_EQ(jsonAt(out(), "/warnings"),
              R"({"loses_every_copy":0,"shares_only_empty_fields":2,"only_here":0})");
}

TEST_F(DeleteTest, ListsInJsonOnlyThoseWhoAreReallyGone)
{
    bookHolds({withMobile(named("a1", "Ann")), named("a2", "Ann"), named("a3", "Ann")});
    int readings = 0;
    book_.onRead = [&] {
        if (++readings == 2) {
            book_.removeBehindTheBack("a2");
        }
    };

    EXPECT_EQ(run({"delete", "b", "--yes", "--format", "json"}), 0);
    EXPECT_EQ(jsonAt(out(), "/deleted"), R"(["a3"])");
    EXPECT_EQ(jsonAt(out(), "/rows"), R"([{"uid":"a3","warnings":[],"only_here":[]}])");
    EXPECT_EQ(jsonAt(out(), "/contacts"), "2");
}

// The question.

TEST_F(DeleteTest, AsksOnATerminal)
{
    bookHoldsAnnTwice();
    everythingIsATerminal();
    typed_ = "y\n";

    EXPECT_EQ(run({"delete", "book.vcf"}), 0);

    EXPECT_NE(err().find(kQuestion), std::string::npos) << err();
    EXPECT_EQ(book_.storedUids(), (Uids{"ann-1", "ben"}));
}

TEST_F(DeleteTest, ShowsThePeopleToBeDeletedBeforeItAsks)
{
    bookHoldsAnnTwice();
    everythingIsATerminal();

    EXPECT_EQ(run({"delete", "book.vcf", "--quiet"}), 1);
    EXPECT_TRUE(out().ends_with("ann-2\n")) << out();

    EXPECT_EQ(run({"delete", "book.vcf", "--quiet", "--format", "json"}), 1);
    EXPECT_EQ(out(), "");
    EXPECT_LT(err().find("ann-2\n"), err().find("Confirm to delete")) << err();
}

TEST_F(DeleteTest, ShowsThePeopleInTheOrderOfTheReviewBelowThoseWhoAreKept)
{
    bookHolds({named("b1", "Ben"), named("d", "Dan"), named("c1", "Cid"), named("a2", "Ann"),
               withMobile(named("b2", "Ben")), named("c2", "Cid"), withMobile(named("a1", "Ann")),
               named("b3", "Ben")});

    EXPECT_EQ(run({"delete", "b", "--dry-run", "--check", "d", "--uncheck", "c1", "--uncheck", "c2",
                   "--allow-last-copy"}),
              0);

    std::vector<std::string> lines;
    std::istringstream table(out().substr(0, out().find("\n\n4 people")));
    for (std::string line; std::getline(table, line);) {
        lines.push_back(line.substr(0, 3) + line.substr(line.rfind(' ') + 1));
    }
    EXPECT_EQ(lines, (Uids{"   UID", "[ ]b2", "[x]b1", "[x]b3", "", "[ ]a1", "[x]a2", "", "[x]d"}))
        << out();
}

TEST_F(DeleteTest, KeepsTheBooksOrderInJson)
{
    bookHolds({named("b1", "Ben"), named("a2", "Ann"), withMobile(named("b2", "Ben")),
               withMobile(named("a1", "Ann")), named("b3", "Ben")});

    EXPECT_EQ(run({"delete", "b", "--dry-run", "--format", "json"}), 0);
    EXPECT_EQ(jsonAt(out(), "/deleted"), R"(["b1","a2","b3"])");
}

TEST_F(DeleteTest, NamesTheAddressBookOfTheDesktopInItsQuestion)
{
    bookHolds({withMobile(named("1", "Ann")), named("2", "Ann"), named("3", "Ann")});
    everythingIsATerminal();

    book_.readingNotes.books = {"Personal\n"};
    EXPECT_EQ(run({"delete", "eds:c0ffee"}), 1);
    EXPECT_NE(err().find("2 people will be deleted from “Personal␊”.\nConfirm"), std::string::npos)
        << err();

    book_.readingNotes.books = {"Personal", "Work"};
    EXPECT_EQ(run({"delete", "eds:"}), 1);
    EXPECT_NE(err().find("2 people will be deleted from “eds:”.\nConfirm"), std::string::npos)
        << err();
}

TEST_F(DeleteTest, AcceptsTheseAnswersAsYes)
{
    everythingIsATerminal();
    for (const std::string answer : {"y", "Y", "yes", "Yes", "ok", "OK", "okay", "Okay", " yes "}) {
        bookHoldsAnnTwice();
        typed_ = answer + "\n";

        EXPECT_EQ(run({"delete", "book.vcf"}), 0) << answer;
        EXPECT_EQ(book_.writes(), 1U) << answer;
    }
}

TEST_F(DeleteTest, ChangesNothingWhenTheAnswerIsAnythingElse)
{
    bookHoldsAnnTwice();
    everythingIsATerminal();
    for (const std::string answer :
         {"\n", "n\n", "no\n", "cancel\n", "yep\n", "1\n", "y y\n", "\x1b\n", "", "y"}) {
        typed_ = answer;

        EXPECT_EQ(run({"delete", "book.vcf", "--format", "json"}), 1) << answer;
        EXPECT_EQ(out(), "") << answer;
        EXPECT_TRUE(err().ends_with("dunmora-cli: Nothing was deleted.\n")) << err();
        expectUnchanged();
    }
}

TEST_F(DeleteTest, NeedsYesWithoutATerminalAndThenReadsNothing)
{
    bookHoldsAnnTwice();
    book_.onRead = [] { ADD_FAILURE() << "the book was read"; };
    typed_ = "y\n";
    for (const bool in : {false, true}) {
        environment_.inIsTerminal = in;
        environment_.errIsTerminal = !in;

        EXPECT_EQ(run({"delete", "book.vcf"}), 2);
        EXPECT_EQ(out(), "");
        EXPECT_EQ(err(), "dunmora-cli: delete needs --yes when it cannot ask on a terminal.\n");
        EXPECT_TRUE(opened_.empty());
    }
}

TEST_F(DeleteTest, AsksOnTheTerminalWhenOnlyTheOutputIsAPipe)
{
    bookHoldsAnnTwice();
    environment_.inIsTerminal = true;
    environment_.errIsTerminal = true;
    typed_ = "okay\n";

    EXPECT_EQ(run({"delete", "book.vcf", "--format", "json"}), 0);
    EXPECT_EQ(jsonAt(out(), "/deleted"), R"(["ann-2"])");
}

TEST_F(DeleteTest, ShowsThePeopleOnTheTerminalWhenTheOutputIsRedirected)
{
    bookHoldsAnnTwice();
    environment_.inIsTerminal = true;
    environment_.errIsTerminal = true;
    typed_ = "no\n";

    EXPECT_EQ(run({"delete", "book.vcf"}), 1);
    EXPECT_LT(err().find("ann-2"), err().find("Confirm to delete")) << err();
    EXPECT_NE(out().find("ann-2"), std::string::npos);
}

TEST_F(DeleteTest, DoesNotAskWithYes)
{
    bookHoldsAnnTwice();
    everythingIsATerminal();

    EXPECT_EQ(run({"delete", "book.vcf", "--yes"}), 0);
    EXPECT_FALSE(asked());
}

// Marks.

TEST_F(DeleteTest, SetsMarksOnTopOfTheProposedOnes)
{
    bookHolds({withMobile(named("a1", "Ann")), named("a2", "Ann"), named("a3", "Ann"),
               withMobile(named("b1", "Ben")), named("b2", "Ben")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--uncheck", "a3", "--check", "a1", "--check", "b1",
                   "--uncheck=b2", "--check", "b1"}),
              0);
    EXPECT_EQ(book_.storedUids(), (Uids{"a3", "b2"}));
}

TEST_F(DeleteTest, TakesAUidThatLooksLikeAnOptionOrAList)
{
    bookHolds({withMobile(named("-x", "Ann")), named("[1,2]", "Ann"), named("--yes", "Ann")});

    EXPECT_EQ(
        run({"delete", "b", "--yes", "--uncheck", "[1,2]", "--check", "-x", "--uncheck", "--yes"}),
        0);
    EXPECT_EQ(book_.storedUids(), (Uids{"[1,2]", "--yes"}));
}

TEST_F(DeleteTest, RefusesAUidThatNobodyHasBeforeAnythingHappens)
{
    bookHoldsAnnTwice();
    for (const std::string option : {"--check", "--uncheck"}) {
        EXPECT_EQ(run({"delete", "b", "--yes", option, "ann-2", option, "no\x1b-one"}), 2);
        EXPECT_EQ(out(), "");
        EXPECT_EQ(err(), "dunmora-cli: Nobody has the uid “no␛-one”.\n");
        expectUnchanged();
    }
}

TEST_F(DeleteTest, RefusesAUidInBothCheckAndUncheck)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "b", "--yes", "--check", "ann-2", "--uncheck", "ann-2"}), 2);
    EXPECT_EQ(err(), "dunmora-cli: “ann-2” is to be both checked and unchecked.\n");
    expectUnchanged();
}

TEST_F(DeleteTest, ReportsThatNobodyIsChecked)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "b", "--yes", "--uncheck", "ann-2", "--quiet"}), 0);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "No contact checked to be deleted!\n");
    expectUnchanged();
}

TEST_F(DeleteTest, PrintsJsonWithNobodyDeletedWhenNobodyIsChecked)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "b", "--yes", "--uncheck", "ann-2", "--format", "json"}), 0);
    EXPECT_EQ(out(), R"({"schema":1,"dryRun":false,"deleted":[],"contacts":3,"duplicates":2,)"
                     R"("remarks":[],"warnings":{"loses_every_copy":0,)"
                     R"("shares_only_empty_fields":0,"only_here":0},"rows":[]})"
                     "\n");
    EXPECT_EQ(err(), "No contact checked to be deleted!\n");
    expectUnchanged();
}

// The guard against losing every copy.

TEST_F(DeleteTest, RefusesToDeleteEveryCopyAndNamesThePeople)
{
    bookHolds({named("a1", "Ann"), named("a2", "Ann"), withMobile(named("b1", "Ben")),
               named("b2", "Ben"), named("c1", "\033Cid", ""), named("c2", "\033Cid", "")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--quiet"}), 1);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "dunmora-cli: 2 people would lose every copy: Ann Lee, ␛Cid. Use "
                     "--keep-one to keep one copy of each, or --allow-last-copy to delete them "
                     "all.\n");
    expectUnchanged();
}

TEST_F(DeleteTest, CountsSomeoneInNoGroupAsALastCopy)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "b", "--yes", "--check", "ben"}), 1);
    EXPECT_NE(err().find("1 person would lose every copy: Ben Lee."), std::string::npos) << err();
    expectUnchanged();
}

TEST_F(DeleteTest, NamesEveryLastCopy)
{
    std::vector<FakePerson> people;
    for (int i = 0; i < 12; ++i) {
        people.push_back(named(std::to_string(2 * i), "P" + std::to_string(i), ""));
        people.push_back(named(std::to_string(2 * i + 1), "P" + std::to_string(i), ""));
    }
    bookHolds(std::move(people));

    EXPECT_EQ(run({"delete", "b", "--yes"}), 1);
    EXPECT_NE(err().find("12 people would lose every copy: P0, P1, P2, P3, P4, P5, P6, P7, P8, P9, "
                         "P10, P11."),
              std::string::npos)
        << err();
}

TEST_F(DeleteTest, NamesLastCopiesByNicknameOrUidWhenTheyHaveNoName)
{
    auto nick = named("n", "", "");
    nick.nickname = "Nick";
    bookHolds({nick, named("u-1", "", "")});

    EXPECT_EQ(
        run({"delete", "b", "--yes", "--match", "nickname", "--check", "n", "--check", "u-1"}), 1);
    EXPECT_NE(err().find("every copy: Nick, (no name, uid u-1)."), std::string::npos) << err();
}

TEST_F(DeleteTest, DeletesEveryCopyWhenAllowed)
{
    bookHolds({named("a1", "Ann"), named("a2", "Ann"), named("b", "Ben")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--allow-last-copy", "--check", "b"}), 0);
    EXPECT_TRUE(book_.storedUids().empty());
}

TEST_F(DeleteTest, KeepsTheFirstOfEveryGroupThatWouldLoseAll)
{
    bookHolds({named("a1", "Ann"), named("a2", "Ann"), named("a3", "Ann"),
               withMobile(named("b1", "Ben")), named("b2", "Ben"), named("c", "Cid")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--keep-one", "--check", "c"}), 0);
    EXPECT_EQ(book_.storedUids(), (Uids{"a1", "b1", "c"}));
}

TEST_F(DeleteTest, KeepsOneAfterApplyingTheUsersMarks)
{
    bookHolds({withMobile(named("a1", "Ann")), named("a2", "Ann")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--keep-one", "--check", "a1"}), 0);
    EXPECT_EQ(book_.storedUids(), (Uids{"a1"}));
}

TEST_F(DeleteTest, DeletesNobodyWhenKeepOneUnchecksEveryone)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "b", "--yes", "--keep-one", "--uncheck", "ann-2", "--check", "ben"}),
              0);
    EXPECT_EQ(err(), "No contact checked to be deleted!\n");
    expectUnchanged();
}

// The guard against blank matches.

TEST_F(DeleteTest, RefusesToDeleteThoseWhoShareOnlyEmptyFields)
{
    bookHolds({withMobile(named("1", "", "")), named("2", "", ""), named("3", "", "")});

    EXPECT_EQ(run({"delete", "b", "--yes"}), 1);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "dunmora-cli: 2 people to be deleted share only empty fields with others. Use "
                     "--allow-blank-match to delete them anyway.\n");
    expectUnchanged();
}

TEST_F(DeleteTest, MarksTheCopiesThatHoldSomethingUnique)
{
    auto unique = named("ann-2", "Ann");
    unique.properties = {{"NOTE", "", {"a"}, {}}};
    bookHolds({withMobile(named("ann-1", "Ann")), unique, named("ann-3", "Ann")});

    EXPECT_EQ(run({"delete", "b", "--dry-run", "--uncheck", "ann-3"}), 0);

    EXPECT_NE(out().find("\n[x]* Ann         Lee"), std::string::npos) << out();
    EXPECT_EQ(err(), "dunmora-cli: warning: 1 copy holds something unique, marked with * in the "
                     "table.\n");
}

TEST_F(DeleteTest, NamesPeopleByTheirCardsInTheGuard)
{
    auto firm = named("1", "", "");
    firm.properties = {{"ORG", "", {"Acme"}, {}}};
    bookHolds({firm, named("2", "", "")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--allow-blank-match"}), 1);

    EXPECT_NE(err().find("1 person would lose every copy: Acme."), std::string::npos) << err();
}

TEST_F(DeleteTest, RefusesToDeleteThoseWhoShareOnlyWhiteSpace)
{
    bookHolds({withMobile(named("1", " ", "")), withMobile(named("2", " ", ""), "555-0101"),
               withMobile(named("3", " ", ""), "555-0102")});

    EXPECT_EQ(run({"delete", "b", "--yes"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: 2 people to be deleted share only empty fields with others. Use "
                     "--allow-blank-match to delete them anyway.\n");
    expectUnchanged();
}

TEST_F(DeleteTest, DeletesThoseWhoShareOnlyEmptyFieldsWhenAllowed)
{
    bookHolds({withMobile(named("1", "", "")), named("2", "", ""), named("3", "", "")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--allow-blank-match"}), 0);
    EXPECT_EQ(book_.storedUids(), (Uids{"1"}));
}

TEST_F(DeleteTest, AllowsAGroupOfEmptyFieldsInWhichNobodyIsChecked)
{
    bookHolds({withMobile(named("1", "", "")), named("2", "", ""), withMobile(named("a1", "Ann")),
               named("a2", "Ann")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--uncheck", "2"}), 0);
    EXPECT_EQ(book_.storedUids(), (Uids{"1", "2", "a1"}));
}

TEST_F(DeleteTest, DoesNotMistakeANameOfDashesForAnEmptyOne)
{
    bookHolds({withMobile(named("1", "-", "")), named("2", "-", "")});

    EXPECT_EQ(run({"delete", "b", "--yes"}), 0);
    EXPECT_EQ(book_.storedUids(), (Uids{"1"}));
}

TEST_F(DeleteTest, ReportsBothWhenBothGuardsApply)
{
    bookHolds({named("1", "", ""), named("2", "", "")});

    EXPECT_EQ(run({"delete", "b", "--yes"}), 1);
    EXPECT_NE(err().find("1 person would lose every copy: (no name, uid 1)."), std::string::npos);
    EXPECT_NE(err().find("2 people to be deleted share only empty fields with others."),
              std::string::npos);

    EXPECT_EQ(run({"delete", "b", "--yes", "--allow-last-copy"}), 1);
    EXPECT_EQ(run({"delete", "b", "--yes", "--allow-blank-match"}), 1);
    EXPECT_EQ(run({"delete", "b", "--yes", "--keep-one"}), 1);
    expectUnchanged();
    EXPECT_EQ(run({"delete", "b", "--yes", "--keep-one", "--allow-blank-match"}), 0);
    EXPECT_EQ(book_.storedUids(), (Uids{"1"}));
}

// Backup.

TEST_F(DeleteTest, BacksUpThePeopleInTheBooksOrderBeforeItDeletes)
{
    bookHolds({named("a2", "Ann"), named("b2", "Ben"), withMobile(named("b1", "Ben")),
               withMobile(named("a1", "Ann"))});
    const auto backup = folder_.path() / "backup.vcf";
    book_.onRemove = [&] { EXPECT_TRUE(std::filesystem::exists(backup)); };

    EXPECT_EQ(run({"delete", "b", "--yes", "--backup", backup.string()}), 0);

    EXPECT_EQ(contentOf(backup), cardOf(named("a2", "Ann")) + cardOf(named("b2", "Ben")));
    EXPECT_NE(out().find("2 people deleted.\nBackup: " + backup.string() + "\n"), std::string::npos)
        << out();
}

TEST_F(DeleteTest, RefusesABackupThatExistsBeforeAnythingHappens)
{
    bookHoldsAnnTwice();
    const auto backup = folder_.path() / "backup.vcf";
    std::ofstream(backup) << "mine";
    everythingIsATerminal();
    typed_ = "y\n";
    for (const auto& option : {Uids{}, Uids{"--yes"}, Uids{"--dry-run"}}) {
        Uids arguments{"delete", "b", "--quiet", "--backup", backup.string()};
        arguments.insert(arguments.end(), option.begin(), option.end());

        EXPECT_EQ(run(arguments), 1);
        EXPECT_EQ(out(), "");
        EXPECT_EQ(err(), "dunmora-cli: “" + backup.string() +
                             "” already exists. Choose another file for the backup.\n");
        expectUnchanged();
    }
    EXPECT_EQ(contentOf(backup), "mine");
}

TEST_F(DeleteTest, RefusesABackupThatIsADanglingLink)
{
    bookHoldsAnnTwice();
    const auto backup = folder_.path() / "backup.vcf";
    std::filesystem::create_symlink(folder_.path() / "nowhere", backup);

    EXPECT_EQ(run({"delete", "b", "--yes", "--backup", backup.string()}), 1);
    expectUnchanged();
}

TEST_F(DeleteTest, RefusesABackupInAFolderThatDoesNotExist)
{
    bookHoldsAnnTwice();
    const auto backup = folder_.path() / "no" / "backup.vcf";
    for (const std::string option : {"--yes", "--dry-run"}) {
        EXPECT_EQ(run({"delete", "b", option, "--backup", backup.string()}), 1);
        EXPECT_EQ(err(), "dunmora-cli: The folder of “" + backup.string() +
                             "” does not exist. Create it first.\n");
        expectUnchanged();
    }
}

TEST_F(DeleteTest, RefusesABackupThatWouldBecomePartOfTheBook)
{
    bookHoldsAnnTwice();
    const auto book = folder_.path() / "people";
    std::filesystem::create_directory(book);
    std::filesystem::create_directory_symlink(book, folder_.path() / "link");
    for (const auto& backup : {book / "backup.vcf", folder_.path() / "link" / "backup.vcf",
                               folder_.path() / "people" / ".." / "people" / "x.vcf"}) {
        EXPECT_EQ(run({"delete", book.string(), "--yes", "--backup", backup.string()}), 2);
        EXPECT_EQ(err(), "dunmora-cli: “" + backup.string() +
                             "” would become part of the address book. Choose another folder for "
                             "the backup.\n");
        expectUnchanged();
    }
}

TEST_F(DeleteTest, AllowsABackupThatWouldNotJoinTheBook)
{
    const auto book = folder_.path() / "people";
    std::filesystem::create_directory(book);
    for (const auto& backup :
         {book / ".backup.vcf", book / "backup.old", folder_.path() / "backup.vcf"}) {
        bookHoldsAnnTwice();
        EXPECT_EQ(run({"delete", book.string(), "--yes", "--backup", backup.string()}), 0);
        EXPECT_TRUE(std::filesystem::exists(backup));
    }
}

TEST_F(DeleteTest, RefusesInADryRunABackupThatTheBookCannotProvide)
{
    bookHoldsAnnTwice();
    book_.onCards = [] { throw PlatformError("The cards do not go together."); };
    const auto backup = folder_.path() / "backup.vcf";

    for (const auto* option : {"--yes", "--dry-run"}) {
        EXPECT_EQ(run({"delete", "b", option, "--backup", backup.string()}), 1) << option;
        EXPECT_EQ(err(), "dunmora-cli: The cards do not go together.\n") << option;
    }
    expectUnchanged();
    EXPECT_FALSE(std::filesystem::exists(backup));
}

TEST_F(DeleteTest, RefusesABackupOfABookWithoutCards)
{
    bookHoldsAnnTwice();
    environment_.openAddressBook = [this](const std::string& /*name*/) {
        return OpenedBook{lent(book_).addressBook, nullptr};
    };
    const auto backup = folder_.path() / "backup.vcf";

    for (const auto* option : {"--yes", "--dry-run"}) {
        EXPECT_EQ(run({"delete", "b", option, "--backup", backup.string()}), 1) << option;
        EXPECT_EQ(err(),
                  "dunmora-cli: This address book cannot be backed up. Back it up with another "
                  "program, then delete without --backup.\n")
            << option;
    }
    expectUnchanged();
    EXPECT_FALSE(std::filesystem::exists(backup));
}

TEST_F(DeleteTest, ReportsTheDeletionWhenTheResultCannotBePrinted)
{
    bookHoldsAnnTwice();
    book_.onSave = [&] { out_.setstate(std::ios::badbit); };

    EXPECT_EQ(run({"delete", "b", "--yes", "--format", "json"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: The output could not be written. However, 1 person was "
                     "deleted.\n");
    EXPECT_EQ(book_.storedUids(), (Uids{"ann-1", "ben"}));
}

TEST_F(DeleteTest, DeletesEverybodyWhenTheReaderHasSeenEnough)
{
    bookHoldsAnnTwice();
    ClosedPipe pipe;
    const Uids arguments{"delete", "book.vcf", "--yes"};

    EXPECT_EQ(runInto(pipe, arguments), 0);
    EXPECT_EQ(err(), "");
    EXPECT_EQ(book_.storedUids(), (Uids{"ann-1", "ben"}));
}

TEST_F(DeleteTest, ReportsAFailureWhenTheReaderHasSeenEnough)
{
    bookHoldsAnnTwice();
    book_.onSave = [] { throw PlatformError("The disk is full."); };
    ClosedPipe pipe;
    const Uids arguments{"delete", "book.vcf", "--yes"};

    EXPECT_EQ(runInto(pipe, arguments), 1);
    EXPECT_EQ(err(), "dunmora-cli: The disk is full.\n");
}

TEST_F(DeleteTest, DeletesNobodyWhenTheBackupFails)
{
    bookHoldsAnnTwice();
    const auto backup = folder_.path() / "backup.vcf";
    everythingIsATerminal();
    typed_ = "y\n";
    // Another program creates the file after it was checked and before it is written.
    int readings = 0;
    book_.onRead = [&] {
        if (++readings == 2) {
            std::ofstream(backup) << "theirs";
        }
    };

    EXPECT_EQ(run({"delete", "b", "--backup", backup.string()}), 1);
    EXPECT_TRUE(err().ends_with("cannot be created: File exists.\n")) << err();
    expectUnchanged();
    EXPECT_EQ(contentOf(backup), "theirs");
}

TEST_F(DeleteTest, NamesTheBookAndTheBackupWhenThereIsNotEnoughMemory)
{
    bookHoldsAnnTwice();
    const auto backup = folder_.path() / "backup.vcf";
    book_.onSave = [] { throw std::bad_alloc(); };

    EXPECT_EQ(run({"delete", "b", "--yes", "--quiet", "--backup", backup.string()}), 1);
    EXPECT_EQ(err(),
              "dunmora-cli: There is not enough memory for “b”. Close other programs and try "
              "again. The backup is kept in “" +
                  backup.string() + "”.\n");
}

TEST_F(DeleteTest, KeepsTheBackupAndNamesItWhenTheDeletionFails)
{
    bookHoldsAnnTwice();
    const auto backup = folder_.path() / "backup.vcf";
    book_.onSave = [] { throw PlatformError("The disk is full."); };

    EXPECT_EQ(run({"delete", "b", "--yes", "--format", "json", "--backup", backup.string()}), 1);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(),
              "dunmora-cli: The disk is full. The backup is kept in “" + backup.string() + "”.\n");
    EXPECT_TRUE(std::filesystem::exists(backup));
    EXPECT_EQ(book_.writes(), 0U);
}

TEST_F(DeleteTest, ReportsWhyTheBookCannotBeSaved)
{
    bookHoldsAnnTwice();
    book_.onSave = [] { throw PlatformError("“b” is read-only"); };

    EXPECT_EQ(run({"delete", "b", "--yes", "--format", "json"}), 1);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "dunmora-cli: “b” is read-only\n");
    EXPECT_EQ(book_.storedUids().size(), 3U);
}

TEST_F(DeleteTest, ReportsAReadOnlyBookBeforeItShowsOrAsksAnything)
{
    bookHoldsAnnTwice();
    everythingIsATerminal();
    book_.onCheck = [](std::span<const std::string> uids) {
        EXPECT_EQ(Uids(uids.begin(), uids.end()), Uids{"ann-2"});
        throw PlatformError("“b” is read-only.");
    };
    const auto backup = folder_.path() / "backup.vcf";

    for (const auto* option : {"--quiet", "--yes"}) {
        EXPECT_EQ(run({"delete", "b", "--quiet", option, "--backup", backup.string()}), 1);
        EXPECT_EQ(out(), "");
        EXPECT_EQ(err(), "dunmora-cli: “b” is read-only.\n");
        EXPECT_FALSE(std::filesystem::exists(backup));
        expectUnchanged();
    }
    EXPECT_EQ(run({"delete", "b", "--quiet", "--dry-run"}), 0) << "writes nothing";
}

// Dry run.

TEST_F(DeleteTest, WritesNeitherBookNorBackupInADryRun)
{
    bookHoldsAnnTwice();
    const auto backup = folder_.path() / "backup.vcf";
    everythingIsATerminal();

    EXPECT_EQ(run({"delete", "b", "--dry-run", "--quiet", "--backup", backup.string()}), 0);

    EXPECT_TRUE(out().ends_with("ann-2\n\n1 person would be deleted.\n1 duplicates of 2\n"))
        << out();
    EXPECT_EQ(err(), "");
    EXPECT_FALSE(std::filesystem::exists(backup));
    EXPECT_EQ(book_.storedUids().size(), 3U);
    expectUnchanged();
}

TEST_F(DeleteTest, NeedsNeitherYesNorATerminalForADryRun)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "b", "--dry-run", "--format", "json"}), 0);
    EXPECT_TRUE(out().starts_with(
        R"({"schema":1,"dryRun":true,"deleted":["ann-2"],"contacts":2,"duplicates":1,)"))
        << out();
    expectUnchanged();
}

TEST_F(DeleteTest, AppliesTheGuardsInADryRunToo)
{
    bookHolds({named("1", "", ""), named("2", "", "")});

    EXPECT_EQ(run({"delete", "b", "--dry-run"}), 1);
    EXPECT_NE(err().find("would lose every copy"), std::string::npos);
    EXPECT_NE(err().find("share only empty fields"), std::string::npos);
    EXPECT_EQ(run({"delete", "b", "--dry-run", "--check", "nobody"}), 2);
    EXPECT_EQ(run({"delete", "b", "--dry-run", "--match", ""}), 2);
    expectUnchanged();
}

TEST_F(DeleteTest, DeletesNobodyInADryRunWithYes)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"delete", "b", "--dry-run", "--yes"}), 0);
    expectUnchanged();
}

// What is shown.

TEST_F(DeleteTest, ShowsTheDeletionsProgressOnATerminal)
{
    bookHoldsAnnTwice();
    environment_.errIsTerminal = true;

    EXPECT_EQ(run({"delete", "b", "--yes"}), 0);
    EXPECT_NE(err().find("\rDeleting checked contacts... ["), std::string::npos);
    EXPECT_TRUE(err().ends_with(" \r"));

    bookHoldsAnnTwice();
    EXPECT_EQ(run({"delete", "b", "--yes", "--quiet"}), 0);
    EXPECT_EQ(err(), "");
}

TEST_F(DeleteTest, NeverShowsAControlCharacter)
{
    bookHolds({withMobile(named("1", "A\x1b[2Jn")), named("2\x1b", "A\x1b[2Jn")});
    everythingIsATerminal();
    typed_ = "y\n";

    EXPECT_EQ(run({"delete", "b\x1b", "--backup", (folder_.path() / "x\x1by").string()}), 0);

    EXPECT_EQ(out().find('\x1b'), std::string::npos);
    EXPECT_EQ(err().find('\x1b'), std::string::npos);
    EXPECT_NE(out().find("/x␛y\n"), std::string::npos) << out();
}

TEST_F(DeleteTest, MatchesByTheGivenFieldsAndStoresNothing)
{
    bookHolds({withMobile(named("1", "Ann", "Lee")), named("2", "Ann", "Li")});

    EXPECT_EQ(run({"delete", "b", "--yes", "--match", "firstname"}), 0);
    EXPECT_EQ(book_.storedUids(), (Uids{"1"}));
    userDefaults_.synchronize();
    EXPECT_TRUE(userDefaults_.onDisk().empty());
}

}  // namespace
}  // namespace dunmora::test
