#include "programs/dunmora-cli/TerminalText.h"
#include "tests/programs/dunmora-cli/CliTest.h"

#include <sstream>

namespace dunmora::test {
namespace {

/// The tables of people on a terminal.
class TableInTerminalTest : public CliTest {
protected:
    TableInTerminalTest()
    {
        everythingIsATerminal();
        bookHolds({person("card-345dcadef490815681dedf741706c6e6", "+44 113 496 0716"),
                   person("card-525af8ab8cde2996a46b16c26bb2ad14", "0113 496 0716")});
    }

    static FakePerson person(const std::string& uid, const std::string& mobile)
    {
        auto hannah = withMobile(named(uid, "Hannah", "Stanhope"), mobile);
        hannah.nickname = "Han";
        return hannah;
    }

    std::string listed(std::size_t columns, std::vector<std::string> options = {})
    {
        environment_.outColumns = columns;
        options.insert(options.begin(), {"list", "b", "--quiet"});
        EXPECT_EQ(run(options), 0);
        return out();
    }

    static void expectFits(const std::string& text, std::size_t columns)
    {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(displayWidth(line), columns) << line;
        }
    }
};

TEST_F(TableInTerminalTest, LeavesOutColumnsThatAreEmptyForEverybody)
{
    EXPECT_EQ(listed(120),
              "     First Name  Last Name  Nickname  Mobile            Modified          UID\n"
              "[ ]  Hannah      Stanhope   Han       +44 113 496 0716  2024-05-01 10:00  "
              "card-345dcadef490815681dedf741706c6e6\n"
              "[x]  Hannah      Stanhope   Han       0113 496 0716     2024-05-01 10:00  "
              "card-525af8ab8cde2996a46b16c26bb2ad14\n"
              "\n"
              "2 duplicates of 2\n");
}

TEST_F(TableInTerminalTest, LeavesOutTheUidAndSaysWhatShowsIt)
{
    EXPECT_EQ(listed(80),
              "     First Name  Last Name  Nickname  Mobile            Modified\n"
              "[ ]  Hannah      Stanhope   Han       +44 113 496 0716  2024-05-01 10:00\n"
              "[x]  Hannah      Stanhope   Han       0113 496 0716     2024-05-01 10:00\n"
              "\n"
              "Not shown: UID. Use --wide to show everything.\n"
              "\n"
              "2 duplicates of 2\n");
}

TEST_F(TableInTerminalTest, CutsTheBeginningOfANumberAndTheTimeOfADate)
{
    EXPECT_EQ(listed(60), "     First Name  Last Name  Nickname  Mobile     Modified\n"
                          "[ ]  Hannah      Stanhope   Han       …496 0716  2024-05-01…\n"
                          "[x]  Hannah      Stanhope   Han       …496 0716  2024-05-01…\n"
                          "\n"
                          "Not shown: UID. Use --wide to show everything.\n"
                          "\n"
                          "2 duplicates of 2\n");
}

TEST_F(TableInTerminalTest, GivesEachValueALineBelow60Columns)
{
    EXPECT_EQ(listed(50), "[ ]  First Name  Hannah\n"
                          "     Last Name   Stanhope\n"
                          "     Nickname    Han\n"
                          "     Mobile      +44 113 496 0716\n"
                          "     Modified    2024-05-01 10:00\n"
                          "     UID\n"
                          "     card-345dcadef490815681dedf741706c6e6\n"
                          "[x]  First Name  Hannah\n"
                          "     Last Name   Stanhope\n"
                          "     Nickname    Han\n"
                          "     Mobile      0113 496 0716\n"
                          "     Modified    2024-05-01 10:00\n"
                          "     UID\n"
                          "     card-525af8ab8cde2996a46b16c26bb2ad14\n"
                          "\n"
                          "2 duplicates of 2\n");
}

TEST_F(TableInTerminalTest, ShowsEverythingWhenAsked)
{
    const auto wide = listed(50, {"--wide"});
    environment_.outIsTerminal = false;

    EXPECT_EQ(listed(50), wide);
    EXPECT_NE(wide.find("  Home  Work  "), std::string::npos) << wide;
    EXPECT_NE(wide.find("  card-525af8ab8cde2996a46b16c26bb2ad14\n"), std::string::npos) << wide;
}

TEST_F(TableInTerminalTest, ContinuesAMatchFieldOnTheNextLineRatherThanCutIt)
{
    const std::string name = "Maria del Carmen Concepción Esperanza de los Ángeles";
    bookHolds({withMobile(named("u-1", name, "Ruiz")), named("u-2", name, "Ruiz")});

    const auto text = listed(60);

    EXPECT_TRUE(text.starts_with("     First Name             Last Name  Mobile    Modified\n"
                                 "[ ]  Maria del Carmen       Ruiz       555-0100  2024-05-01…\n"
                                 "     Concepción Esperanza\n"
                                 "     de los Ángeles\n"
                                 "[x]  Maria del Carmen       Ruiz                 2024-05-01…\n"))
        << text;
}

TEST_F(TableInTerminalTest, CutsANameThatIsNoMatchFieldWhereOneCanSeeIt)
{
    bookHolds({named("u-1", std::string(70, 'n'), "王小明王小明王小明王小明"),
               withMobile(named("u-2", std::string(70, 'n'), "x"))});

    const auto text = listed(80, {"--match", "firstname"});

    expectFits(text, 80);
    EXPECT_NE(text.find("…"), std::string::npos) << text;
    EXPECT_NE(text.find("Use --wide to show everything.\n"), std::string::npos) << text;
}

TEST_F(TableInTerminalTest, FitsEveryWidthInEveryScript)
{
    auto wide = FakePerson();
    wide.firstName = "美咲美咲美咲美咲";
    wide.lastName = "Zoe\u0308-😀-يُوسُف";
    wide.nickname = std::string(50, 'n');
    auto other = wide;
    wide.uid = "urn:uuid:a974c8a5-1c5b-5cf8-aca6-60d3a03df39f";
    other.uid = "2";
    bookHolds({wide, other});
    for (std::size_t columns = 50; columns < 250; ++columns) {
        expectFits(listed(columns), columns);
        expectFits(listed(columns, {"--match", "nickname,firstname,lastname,home,work,mobile"}),
                   columns);
    }
}

TEST_F(TableInTerminalTest, KeepsStarsColoursAndSubstitutesWhenItIsStacked)
{
    auto firm = withMobile(named("1", "", ""));
    firm.properties = {{"ORG", "", {"Acme"}, {}}};
    auto copy = named("2", "", "");
    copy.properties = {{"ORG", "", {"Umbrella"}, {}}};
    bookHolds({firm, copy});
    environment_.wantsColour = true;

    const auto text = listed(50);

    EXPECT_NE(text.find("[ ]  First Name  \x1b[2mAcme\x1b[0m\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\x1b[31m[x]\x1b[0m* First Name  \x1b[2mUmbrella\x1b[0m\n"),
              std::string::npos)
        << text;
}

TEST_F(TableInTerminalTest, UsesTheWidthOfTheTerminalThatShowsTheTable)
{
    environment_.outIsTerminal = false;
    environment_.outColumns = 200;
    environment_.errColumns = 80;

    EXPECT_EQ(run({"delete", "b", "--quiet"}), 1);

    EXPECT_NE(out().find("card-525a"), std::string::npos) << out();
    EXPECT_EQ(err().find("card-525a"), std::string::npos) << err();
    EXPECT_NE(err().find("Not shown: UID."), std::string::npos) << err();
}

}  // namespace
}  // namespace dunmora::test
