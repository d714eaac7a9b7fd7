#include "platform/PlatformError.h"
#include "tests/fakes/FakeCard.h"
#include "tests/programs/dunmora-cli/CliTest.h"
#include "tests/programs/dunmora-cli/ClosedPipe.h"
#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <cstdlib>
#include <ctime>
#include <new>
#include <stdexcept>

namespace dunmora::test {
namespace {

/// A stream that rejects all output, like a full disk.
class FullDisk final : public std::streambuf {
protected:
    int overflow(int /*c*/) override { return traits_type::eof(); }
};

class ListTest : public CliTest {
protected:
    void SetUp() override { timeZoneIs("UTC0"); }
    void TearDown() override { timeZoneIs("UTC0"); }

    static void timeZoneIs(const char* zone)
    {
        setenv("TZ", zone, 1);  // NOLINT(concurrency-mt-unsafe): no other thread runs.
        tzset();
    }
};

TEST_F(ListTest, PrintsTheReviewAsExactlyThisJson)
{
    auto full = FakePerson();
    full.uid = "uid-2";
    full.modified.reset();
    bookHolds({withMobile(named("uid-1", "Ann"), "+1 555 0100"), named("uid-3", "Ben"), full});
    book_.readingNotes.cardsSkipped = 3;

    EXPECT_EQ(run({"list", "my book.vcf", "--format", "json", "--quiet"}), 0);
    EXPECT_EQ(
        out(),
        R"({"schema":1,"addressBook":"my book.vcf","match":["firstname","lastname"],"contacts":3,)"
        R"("duplicates":2,"skipped":3,"remarks":[],"warnings":{"loses_every_copy":0,)"
        R"("shares_only_empty_fields":0,"only_here":1},"groups":[{"key":"Ann-Lee-","rows":[{"uid":"uid-1",)"
        R"("fname":"Ann","lname":"Lee","nickname":"","home":"","work":"","mobile":"+1 555 0100",)"
        R"("modified":"2024-05-01T10:00:00Z","check":false,"source":"people.vcf",)"
        R"("warnings":[],"only_here":[]},)"
        R"({"uid":"uid-2","fname":"Ann",)"
        R"("lname":"Lee","nickname":"Annie","home":"555-0100","work":"555-0101",)"
        R"("mobile":"555-0102","modified":null,"check":true,"source":"people.vcf",)"
        R"("warnings":["only_here"],"only_here":[)"
        R"({"property":"NICKNAME","value":"Annie"},{"property":"TEL","value":"555-0101"},)"
        R"({"property":"TEL","value":"555-0102"}]}]}]})"
        "\n");
    EXPECT_EQ(err(), "");
}

TEST_F(ListTest, FailsWhenDuplicatesAreFoundAndThatIsAskedFor)
{
    bookHoldsAnnTwice();
    EXPECT_EQ(run({"list", "b"}), 0);
    const auto table = out();

    EXPECT_EQ(run({"list", "b", "--fail-if-found"}), 3);
    EXPECT_EQ(out(), table);
    EXPECT_EQ(run({"list", "b", "--fail-if-found", "--quiet", "--format", "json"}), 3);
    EXPECT_EQ(jsonAt(out(), "/duplicates"), "2");
}

TEST_F(ListTest, SucceedsWithoutDuplicates)
{
    bookHolds({named("ann", "Ann"), named("ben", "Ben")});

    EXPECT_EQ(run({"list", "b", "--fail-if-found"}), 0);
    EXPECT_EQ(out(), "0 duplicates of 2\n");
}

TEST_F(ListTest, PrintsTheWarningsBeforeItFails)
{
    bookHolds({named("1", "", ""), named("2", "", "")});

    EXPECT_EQ(run({"list", "b", "--fail-if-found"}), 3);
    EXPECT_NE(err().find("warning: 1 person would lose every copy."), std::string::npos) << err();
}

TEST_F(ListTest, PrintsItsWarningsAsDataEvenWhenItIsQuiet)
{
    auto unique = named("2", "", "");
    unique.properties = {{"EMAIL", "", {"two@example.org"}, {}}};
    bookHolds({named("1", "", ""), unique, withMobile(named("3", "Ann")), named("4", "Ann")});
    book_.readingNotes.remarks = {"1 card was skipped.", "“b” is odd."};

    EXPECT_EQ(run({"list", "b", "--format", "json", "--quiet"}), 0);

    EXPECT_EQ(err(), "");
    EXPECT_EQ(jsonAt(out(), "/remarks"), R"(["1 card was skipped.","“b” is odd."])");
    EXPECT_EQ(jsonAt(out(), "/warnings"),
              R"({"loses_every_copy":1,"shares_only_empty_fields":2,"only_here":1})");
    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/0/warnings"),
              R"(["loses_every_copy","shares_only_empty_fields"])");
    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/1/warnings"),
              R"(["loses_every_copy","shares_only_empty_fields","only_here"])");
    EXPECT_EQ(jsonAt(out(), "/groups/1/rows/1/warnings"), "[]");
}

TEST_F(ListTest, PrintsNoGroupsAsAnEmptyList)
{
    EXPECT_EQ(run({"list", "book.vcf", "--format", "json"}), 0);
    EXPECT_EQ(
        out(),
        R"({"schema":1,"addressBook":"book.vcf","match":["firstname","lastname"],)"
        R"("contacts":0,"duplicates":0,"skipped":0,"remarks":[],"warnings":{"loses_every_copy":0,)"
        R"("shares_only_empty_fields":0,"only_here":0},"groups":[]})"
        "\n");
}

TEST_F(ListTest, NamesTheMatchFieldsOfTheJsonInTheOrderOfTheKey)
{
    EXPECT_EQ(run({"list", "b", "--format", "json", "--match",
                   "mobile,work,home,lastname,firstname,nickname,home"}),
              0);
    EXPECT_EQ(jsonAt(out(), "/match"),
              R"(["nickname","firstname","lastname","home","work","mobile"])");
}

TEST_F(ListTest, KeepsTheEnginesOrderOfGroupsAndRows)
{
    bookHolds({named("z", "Zoe"), named("b2", "Ben"), named("a", "Ann"), named("z2", "Zoe"),
               named("b1", "Ben")});

    EXPECT_EQ(run({"list", "b", "--format", "json", "--quiet"}), 0);

    std::vector<std::string> uids;
    for (const auto* const uid : {"/groups/0/rows/0/uid", "/groups/0/rows/1/uid",
                                  "/groups/1/rows/0/uid", "/groups/1/rows/1/uid"}) {
        uids.push_back(jsonAt(out(), uid));
    }
    EXPECT_EQ(uids, (std::vector<std::string>{R"("z")", R"("z2")", R"("b2")", R"("b1")"}));
    EXPECT_EQ(jsonAt(out(), "/duplicates"), "4");
}

TEST_F(ListTest, EscapesEverythingOutsideAsciiInJsonForATerminal)
{
    bookHolds({named("1", "Zoë\x1b"), named("2", "Zoë\x1b")});
    run({"list", "b", "--format", "json", "--quiet"});
    const auto piped = out();
    environment_.outIsTerminal = true;

    run({"list", "b", "--format", "json", "--quiet"});

    EXPECT_NE(piped.find(R"("fname":"Zoë\u001b")"), std::string::npos);
    EXPECT_NE(out().find(R"("fname":"Zo\u00eb\u001b")"), std::string::npos);
    EXPECT_EQ(jsonAt(piped), jsonAt(out()));
}

TEST_F(ListTest, ReplacesInvalidUtf8InJson)
{
    bookHolds({named("1", "Zo\xEB"), named("2", "Zo\xEB")});

    run({"list", "b\xFF", "--format", "json", "--quiet"});

    EXPECT_EQ(jsonAt(out(), "/addressBook"), "\"b\xEF\xBF\xBD\"");
    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/0/fname"), "\"Zo\xEF\xBF\xBD\"");
}

TEST_F(ListTest, PrintsCsvAsTheStandardRequires)
{
    auto second = withMobile(named("2", "An\"n, Dr."), "line\r\nbreak");
    second.modified.reset();
    second.source.address = "my, phone.vcf";
    bookHolds({withMobile(named("1", "An\"n, Dr."), " +1 "), second, named("3", "Ben"),
               named("4", "Ben")});

    EXPECT_EQ(run({"list", "b", "--format", "csv", "--quiet"}), 0);
    EXPECT_EQ(out(), "group,check,uid,fname,lname,nickname,home,work,mobile,modified,source\r\n"
                     "1,false,1,\"An\"\"n, Dr.\",Lee,,,, +1 ,2024-05-01T10:00:00Z,people.vcf\r\n"
                     "1,true,2,\"An\"\"n, Dr.\",Lee,,,,\"line\r\nbreak\",,\"my, phone.vcf\"\r\n"
                     "2,true,3,Ben,Lee,,,,,2024-05-01T10:00:00Z,people.vcf\r\n"
                     "2,true,4,Ben,Lee,,,,,2024-05-01T10:00:00Z,people.vcf\r\n");
    EXPECT_EQ(err(), "");
}

TEST_F(ListTest, PrintsNoSourceOfABookWithoutCards)
{
    bookHolds({named("1", "Ann"), named("2", "Ann")});
    environment_.openAddressBook = [this](const std::string& /*name*/) {
        auto book = lent(book_);
        book.cardSource = nullptr;
        return book;
    };

    run({"list", "b", "--format", "csv", "--quiet"});
    EXPECT_TRUE(out().ends_with("Z,\r\n")) << out();
    run({"list", "b", "--format", "json", "--quiet"});
    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/0/source"), "null");
}

TEST_F(ListTest, PrintsOnlyTheHeaderAsCsvWhenThereIsNoDuplicate)
{
    EXPECT_EQ(run({"list", "b", "--format", "csv"}), 0);
    EXPECT_EQ(out(), "group,check,uid,fname,lname,nickname,home,work,mobile,modified,source\r\n");
}

TEST_F(ListTest, LeavesCsvValuesUnchangedInAPipe)
{
    bookHolds({named("1", "=1+1\x1b\xEB"), named("2", "=1+1\x1b\xEB")});

    run({"list", "b", "--format", "csv", "--quiet"});

    EXPECT_NE(out().find(",=1+1\x1b\xEB,"), std::string::npos);
}

TEST_F(ListTest, ShowsNoControlCharacterInCsvOnATerminal)
{
    bookHolds({named("1", "A\x1b[2J\nn\xEB"), named("2", "A\x1b[2J\nn\xEB")});
    environment_.outIsTerminal = true;

    run({"list", "b", "--format", "csv", "--quiet"});

    EXPECT_NE(out().find(",A␛[2J␊n�,"), std::string::npos) << out();
}

TEST_F(ListTest, SeparatesTheGroupsAndShowsCheckMarksAndAllColumns)
{
    auto full = FakePerson();
    full.uid = "uid-of-ann";
    bookHolds(
        {full, named("b1", "Benjamin", "Li"), named("a2", "Ann"), named("b2", "Benjamin", "Li")});

    EXPECT_EQ(run({"list", "book.vcf", "--quiet"}), 0);
    EXPECT_EQ(
        out(),
        "     First Name  Last Name  Nickname  Home      Work      Mobile    Modified          "
        "UID\n"
        "[ ]  Ann         Lee        Annie     555-0100  555-0101  555-0102  2024-05-01 10:00  "
        "uid-of-ann\n"
        "[x]  Ann         Lee                                                2024-05-01 10:00  a2\n"
        "\n"
        "[x]* Benjamin    Li                                                 2024-05-01 10:00  b1\n"
        "[x]* Benjamin    Li                                                 2024-05-01 10:00  b2\n"
        "\n"
        "4 duplicates of 4\n");
}

TEST_F(ListTest, ShowsOnlyTheTotalWithoutDuplicates)
{
    bookHolds({named("1", "Ann"), named("2", "Ben")});

    EXPECT_EQ(run({"list", "book.vcf", "--format", "table"}), 0);
    EXPECT_EQ(out(), "0 duplicates of 2\n");
    EXPECT_EQ(err(), "");
}

TEST_F(ListTest, ShowsTimesInATableInTheUsersTimeZone)
{
    timeZoneIs("XXX-2");
    bookHoldsAnnTwice();

    run({"list", "book.vcf"});

    EXPECT_NE(out().find("  2024-05-01 12:00  ann-1\n"), std::string::npos) << out();
}

TEST_F(ListTest, AlignsWideAndCombiningCharacters)
{
    bookHolds({named("1", "王小明", "Li"), named("2", "王小明", "Li"),
               named("3", "Zoe\u0308", "Li"), named("4", "Zoe\u0308", "Li")});

    run({"list", "book.vcf", "--quiet"});

    EXPECT_NE(out().find("\n[x]* 王小明      Li  "), std::string::npos) << out();
    EXPECT_NE(out().find("\n[x]* Zoe\u0308         Li  "), std::string::npos) << out();
}

TEST_F(ListTest, LetsAVeryLongNameOverflowItsColumn)
{
    const std::string endless(1000, 'a');
    bookHolds({named("1", endless, "Li"), named("2", endless, "Li"), named("3", "Ann"),
               named("4", "Ann")});

    run({"list", "book.vcf", "--quiet"});

    EXPECT_NE(out().find("]* " + endless + "  Li  "), std::string::npos);
    EXPECT_NE(out().find("]* Ann" + std::string(37 + 2, ' ') + "Lee  "), std::string::npos);
}

TEST_F(ListTest, CutsAnEndlessNameInATableOnly)
{
    const std::string endless(1'000'000, 'a');
    bookHolds({named("1", endless, "Li"), named("2", endless, "Li")});

    run({"list", "book.vcf", "--quiet"});
    EXPECT_NE(out().find("]* " + std::string(1024, 'a') + "…  Li  "), std::string::npos);
    EXPECT_LT(out().size(), 5000U);

    for (const std::string format : {"json", "csv"}) {
        out_.str("");
        run({"list", "book.vcf", "--quiet", "--format", format});
        EXPECT_NE(out().find(endless), std::string::npos) << format;
    }
}

TEST_F(ListTest, NeverShowsAControlCharacterInATable)
{
    // Escape, line feed, delete, a C1 control, a change of the writing direction, a line separator
    // and a stray byte.
    // NOLINTNEXTLINE(misc-misleading-bidirectional): misleading on purpose.
    const std::string name = "A\x1b[2J\n\x7f\xC2\x9B\xE2\x80\xAE\xE2\x80\xA8\xFFn";
    bookHolds({named("1\r", name), named("2", name)});
    book_.readingNotes.remarks = {"odd \x1b[31m file"};

    run({"list", "book.vcf"});

    EXPECT_NE(out().find("]* A␛[2J␊␡����n  Lee"), std::string::npos) << out();
    EXPECT_NE(out().find("  1␍\n"), std::string::npos);
    EXPECT_NE(err().find("note: odd ␛[31m file\n"), std::string::npos) << err();
}

TEST_F(ListTest, ColoursNothingInAPipe)
{
    bookHoldsAnnTwice();
    environment_.wantsColour = true;

    run({"list", "book.vcf"});

    EXPECT_EQ(out().find('\x1b'), std::string::npos);
}

TEST_F(ListTest, ColoursNothingWhenTheUserWantsNoColour)
{
    bookHoldsAnnTwice();
    everythingIsATerminal();
    environment_.wantsColour = false;

    run({"list", "book.vcf"});

    EXPECT_EQ(out().find('\x1b'), std::string::npos);
    EXPECT_EQ(err().find('\x1b'), std::string::npos);
}

TEST_F(ListTest, ColoursTitlesAndMarksOnATerminal)
{
    bookHoldsAnnTwice();
    everythingIsATerminal();
    environment_.wantsColour = true;

    run({"list", "book.vcf"});

    EXPECT_TRUE(out().starts_with("\x1b[1m")) << out();
    EXPECT_NE(out().find("\n\x1b[31m[x]\x1b[0m  Ann"), std::string::npos) << out();
}

TEST_F(ListTest, ShowsMessagesAndABarOnATerminal)
{
    bookHoldsAnnTwice();
    environment_.errIsTerminal = true;

    run({"list", "book.vcf"});

    for (const std::string part : {"\rLoading Contacts...", "\rSorting contacts... [",
                                   "\rFinding duplicated contacts... [", "##", "%"}) {
        EXPECT_NE(err().find(part), std::string::npos) << part;
    }
    EXPECT_TRUE(err().ends_with(" \r")) << "cleared at the end";
}

TEST_F(ListTest, ShowsNoProgressOnADumbTerminal)
{
    environment_.errIsTerminal = true;
    environment_.isDumbTerminal = true;

    EXPECT_EQ(run({"list", "book.vcf"}), 0);
    EXPECT_EQ(err(), "");
}

TEST_F(ListTest, ShowsNoProgressWhenQuietOrInAPipe)
{
    bookHoldsAnnTwice();
    book_.readingNotes = {1, {"A note."}};
    run({"list", "book.vcf", "--format", "json"});
    EXPECT_EQ(err().find("Loading"), std::string::npos);
    environment_.errIsTerminal = true;

    run({"list", "book.vcf", "--quiet"});

    EXPECT_EQ(err(), "");
}

TEST_F(ListTest, ReportsTheBooksNotes)
{
    book_.readingNotes = {2, {"2 cards without END were skipped.", "“a.vcf” was left out."}};

    EXPECT_EQ(run({"list", "book.vcf"}), 0);
    EXPECT_EQ(err(), "dunmora-cli: note: 2 cards without END were skipped.\n"
                     "dunmora-cli: note: “a.vcf” was left out.\n");
}

TEST_F(ListTest, ShowsDatesOfAnyYear)
{
    auto early = named("1", "Ann");
    early.modified = std::chrono::sys_days(std::chrono::year(1) / 1 / 2);
    auto late = named("2", "Ann");
    late.modified = std::chrono::sys_days(std::chrono::year(9999) / 12 / 30);
    bookHolds({early, late});

    run({"list", "book.vcf", "--format", "csv"});
    EXPECT_NE(out().find("0001-01-02T00:00:00Z"), std::string::npos) << out();
    EXPECT_NE(out().find("9999-12-30T00:00:00Z"), std::string::npos) << out();

    run({"list", "book.vcf"});
    EXPECT_NE(out().find("0001-01-0"), std::string::npos) << out();
    EXPECT_NE(out().find("9999-12-"), std::string::npos) << out();
}

TEST_F(ListTest, UsesWhatAnotherProgramHasStored)
{
    bookHolds({named("1", "Ann"), named("2", "Ann", "Moe")});
    FakeUserDefaults theirs(disk_);
    theirs.setBool("filterLastname", false);
    theirs.synchronize();

    EXPECT_EQ(run({"list", "book.vcf", "--format", "json"}), 0);

    EXPECT_EQ(jsonAt(out(), "/match"), R"(["firstname"])");
}

TEST_F(ListTest, WarnsOfPeopleWhoWouldLoseEveryCopy)
{
    bookHolds({named("1", "Ann"), named("2", "Ann"), named("3", "Ben"), named("4", "Ben"),
               withMobile(named("5", "Cid")), named("6", "Cid")});

    run({"list", "book.vcf"});

    EXPECT_EQ(err(), "dunmora-cli: warning: 2 people would lose every copy.\n"
                     "dunmora-cli: warning: 4 copies hold something unique, marked with * in the "
                     "table.\n");
}

/// Ann three times: the first copy is kept, the second holds something unique.
std::vector<FakePerson> annWithAnAddress()
{
    auto unique = named("ann-2", "Ann");
    unique.properties = {textProperty("EMAIL", "ann@example.org"), textProperty("NOTE", "a\nb")};
    auto kept = withMobile(named("ann-1", "Ann"));
    kept.properties = {textProperty("NOTE", "a b")};
    return {kept, unique, named("ann-3", "Ann")};
}

TEST_F(ListTest, MarksAndCountsTheCopiesThatHoldSomethingUnique)
{
    bookHolds(annWithAnAddress());

    EXPECT_EQ(run({"list", "book.vcf"}), 0);

    EXPECT_NE(out().find("\n[ ]  Ann         Lee"), std::string::npos) << out();
    EXPECT_NE(out().find("\n[x]* Ann         Lee"), std::string::npos) << out();
    EXPECT_NE(out().find("\n[x]  Ann         Lee"), std::string::npos) << out();
    EXPECT_TRUE(out().ends_with("\n3 duplicates of 3\n")) << out();
    EXPECT_EQ(err(), "dunmora-cli: warning: 1 copy holds something unique, marked with * in the "
                     "table.\n");

    run({"list", "book.vcf", "--format", "csv"});
    EXPECT_EQ(err(), "dunmora-cli: warning: 1 copy holds something unique.\n");
    run({"list", "book.vcf", "--quiet"});
    EXPECT_EQ(err(), "");
}

TEST_F(ListTest, NamesInJsonWhatOnlyOneCopyHolds)
{
    bookHolds(annWithAnAddress());

    run({"list", "book.vcf", "--format", "json", "--quiet"});

    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/0/only_here"), "[]");
    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/1/only_here/0/property"), R"("EMAIL")");
    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/1/only_here/0/value"), R"("ann@example.org")");
    EXPECT_EQ(jsonAt(out(), "/groups/0/rows/2/only_here"), "[]");
}

TEST_F(ListTest, NamesPeopleWithoutANameInATable)
{
    auto firm = withMobile(named("1", "", ""));
    firm.properties = {textProperty("ORG", "Acme\x1b[2J")};
    auto other = named("2", "", "\u00A0");
    other.properties = {textProperty("EMAIL", "info@example.org")};
    bookHolds({firm, other, named("3", "", ""), named("4", "", "\u00A0")});
    environment_.outIsTerminal = true;
    environment_.wantsColour = true;

    run({"list", "book.vcf", "--quiet"});

    EXPECT_NE(out().find("\x1b[2mAcme␛[2J"), std::string::npos) << out();
    EXPECT_NE(out().find("\x1b[2minfo@example.org"), std::string::npos) << out();
    run({"list", "book.vcf", "--quiet", "--format", "csv"});
    EXPECT_EQ(out().find("Acme"), std::string::npos) << out();
}

TEST_F(ListTest, WarnsOfPeopleWhoShareOnlyEmptyFields)
{
    bookHolds({withMobile(named("1", "", "")), named("2", "", ""), named("3", "", "")});

    run({"list", "book.vcf", "--format", "csv"});

    EXPECT_EQ(err(), "dunmora-cli: warning: 3 people share only empty fields.\n");
}

TEST_F(ListTest, MatchesByTheStoredFieldsWithoutOptions)
{
    userDefaults_.setBool("filterLastname", false);
    bookHolds({named("1", "Ann", "Lee"), named("2", "Ann", "Li")});

    run({"list", "b", "--format", "json", "--quiet"});

    EXPECT_EQ(jsonAt(out(), "/match"), R"(["firstname"])");
    EXPECT_EQ(jsonAt(out(), "/groups/0/key"), R"("Ann-")");
}

TEST_F(ListTest, DoesNotStoreTheGivenMatchFields)
{
    userDefaults_.setBool("filterNickname", true);
    userDefaults_.synchronize();
    const auto before = userDefaults_.onDisk();
    bookHolds({named("1", "Ann", "Lee"), named("2", "Ann", "Li")});

    EXPECT_EQ(run({"list", "b", "--match", "firstname", "--format", "json", "--quiet"}), 0);

    EXPECT_EQ(jsonAt(out(), "/match"), R"(["firstname"])");
    EXPECT_EQ(jsonAt(out(), "/duplicates"), "2");
    userDefaults_.synchronize();
    EXPECT_EQ(userDefaults_.onDisk(), before);
    run({"list", "b", "--format", "json", "--quiet"});
    EXPECT_EQ(jsonAt(out(), "/match"), R"(["nickname","firstname","lastname"])");
}

TEST_F(ListTest, AsksForAFieldWhenThePreferencesChooseNone)
{
    userDefaults_.setBool("filterFirstname", false);
    userDefaults_.setBool("filterLastname", false);
    book_.onRead = [] { ADD_FAILURE() << "the book was read"; };

    EXPECT_EQ(run({"list", "book.vcf", "--quiet"}), 2);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "You should choose at least one field as match condition!\n");
}

TEST_F(ListTest, ReportsWhyTheBookCannotBeRead)
{
    environment_.errIsTerminal = true;
    book_.onRead = [] { throw PlatformError("“book.vcf” cannot be read: no such file"); };

    for (const std::string format : {"table", "json", "csv"}) {
        EXPECT_EQ(run({"list", "book.vcf", "--quiet", "--format", format}), 1);
        EXPECT_EQ(out(), "");
        EXPECT_EQ(err(), "dunmora-cli: “book.vcf” cannot be read: no such file\n");
    }
}

TEST_F(ListTest, ClearsTheProgressBeforeAnError)
{
    environment_.errIsTerminal = true;
    book_.onRead = [] { throw PlatformError("gone"); };

    EXPECT_EQ(run({"list", "book.vcf"}), 1);
    EXPECT_EQ(err(), "\rLoading Contacts...\r                   \rdunmora-cli: gone\n");
}

TEST_F(ListTest, ReportsThatTheBookCannotBeOpened)
{
    environment_.openAddressBook = [](const std::string& name) -> OpenedBook {
        throw PlatformError("no book “" + name + "”");
    };

    EXPECT_EQ(run({"list", "x\n"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: no book “x␊”\n");
}

TEST_F(ListTest, ReportsThatTheOutputCannotBeWritten)
{
    bookHoldsAnnTwice();
    FullDisk disk;
    const std::vector<std::string> arguments{"list", "book.vcf"};

    EXPECT_EQ(runInto(disk, arguments), 1);
    EXPECT_EQ(err(), "dunmora-cli: The output could not be written.\n");
}

TEST_F(ListTest, EndsQuietlyWhenTheReaderHasSeenEnough)
{
    bookHoldsAnnTwice();
    ClosedPipe pipe;
    for (const std::string format : {"table", "json", "csv"}) {
        const std::vector<std::string> arguments{"list", "b", "--quiet", "--format", format};

        EXPECT_EQ(runInto(pipe, arguments), 0);
        EXPECT_EQ(err(), "");
    }
    const std::vector<std::string> arguments{"list", "b", "--quiet", "--fail-if-found"};
    EXPECT_EQ(runInto(pipe, arguments), 3) << "as without the pipe";
}

TEST_F(ListTest, ReportsAnyFailureInOneLine)
{
    book_.onRead = [] { throw std::out_of_range("index 7"); };

    EXPECT_EQ(run({"list", "book.vcf"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: index 7\n");
}

TEST_F(ListTest, NamesTheBookForWhichThereIsNotEnoughMemory)
{
    book_.onRead = [] { throw std::bad_alloc(); };

    EXPECT_EQ(run({"list", "book.vcf"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: There is not enough memory for “book.vcf”. Close other programs "
                     "and try again.\n");
}

TEST_F(ListTest, ChangesNothing)
{
    bookHoldsAnnTwice();

    run({"list", "book.vcf"});

    EXPECT_EQ(book_.savesAsked(), 0U);
    EXPECT_EQ(book_.storedUids().size(), 3U);
}

}  // namespace
}  // namespace dunmora::test
