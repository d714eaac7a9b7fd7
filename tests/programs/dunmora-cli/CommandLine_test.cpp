#include "programs/dunmora-cli/CommandLine.h"
#include "tests/programs/dunmora-cli/CliTest.h"

#include <algorithm>
#include <sstream>

namespace dunmora::test {
namespace {

const std::vector<std::string> kCommands{"list", "delete", "restore", "show",
                                         "diff", "fields", "books",   "help"};

/// The lines after the last title of a help.
std::vector<std::string> examplesIn(const std::string& help)
{
    const std::string kTitle = "\nExamples:\n";
    const auto title = help.rfind(kTitle);
    EXPECT_NE(title, std::string::npos) << help;
    std::istringstream lines(help.substr(title + kTitle.size()));
    std::vector<std::string> examples;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_TRUE(line.starts_with("  ")) << line;
        examples.push_back(line.substr(2));
    }
    return examples;
}

/// The words of a command for a shell without the first one and without redirections.
std::vector<std::string> argumentsOf(const std::string& command)
{
    std::istringstream words(command.substr(0, command.find(" < ")));
    std::vector<std::string> arguments;
    std::string word;
    words >> word;
    while (words >> word) {
        arguments.push_back(word);
    }
    return arguments;
}

class CommandLineTest : public CliTest {
protected:
    void expectWrongUse(const std::vector<std::string>& arguments, const std::string& about)
    {
        EXPECT_EQ(run(arguments), 2) << about;
        EXPECT_EQ(out(), "") << about;
        const auto line = err();
        EXPECT_TRUE(line.starts_with("dunmora-cli: ")) << line;
        EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1) << line;
        EXPECT_NE(line.find(about), std::string::npos) << line;
        EXPECT_TRUE(opened_.empty()) << about;
    }
};

TEST_F(CommandLineTest, PrintsItsVersionOnStandardOutput)
{
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(out(), "dunmora-cli 0.1\n");
    EXPECT_EQ(err(), "");
}

TEST_F(CommandLineTest, PrintsItsVersionForEveryCommand)
{
    for (const std::string command : {"list", "delete", "restore", "fields"}) {
        EXPECT_EQ(run({command, "--version"}), 0) << command;
        EXPECT_EQ(out(), "dunmora-cli 0.1\n") << command;
    }
}

TEST_F(CommandLineTest, PrintsItsHelpOnStandardOutput)
{
    EXPECT_EQ(run({"--help"}), 0);
    for (const std::string part :
         {"list", "delete", "restore", "fields", "--version", "Exit status"}) {
        EXPECT_NE(out().find(part), std::string::npos) << part;
    }
    EXPECT_EQ(err(), "");
}

TEST_F(CommandLineTest, ExplainsEveryOptionOfACommand)
{
    EXPECT_EQ(run({"list", "--help"}), 0);
    for (const std::string part : {"ADDRESS-BOOK", "--match", "--format", "--wide", "--quiet",
                                   "csv", "local time", "--fail-if-found"}) {
        EXPECT_NE(out().find(part), std::string::npos) << part;
    }

    EXPECT_EQ(run({"delete", "--help"}), 0);
    for (const std::string part :
         {"ADDRESS-BOOK", "--match", "--check", "--uncheck", "--check-from", "--uncheck-from",
          "--keep-one", "--dry-run", "--yes", "--backup", "--allow-last-copy",
          "--allow-blank-match", "--format", "--wide", "--quiet"}) {
        EXPECT_NE(out().find(part), std::string::npos) << part;
    }

    EXPECT_EQ(run({"restore", "--help"}), 0);
    for (const std::string part :
         {"BACKUP", "ADDRESS-BOOK", "--dry-run", "--yes", "--format", "--quiet"}) {
        EXPECT_NE(out().find(part), std::string::npos) << part;
    }

    EXPECT_EQ(run({"fields", "--help"}), 0);
    EXPECT_NE(out().find("FIELDS"), std::string::npos);
}

TEST_F(CommandLineTest, ExplainsTheNamesOfTheSystemsAddressBooks)
{
    environment_.systemBookHelp = "own: for the system's own";

    for (const std::string command : {"list", "delete", "restore"}) {
        EXPECT_EQ(run({command, "--help"}), 0);
        EXPECT_NE(out().find("hold the cards; own: for the system's own\n"), std::string::npos)
            << out();
        EXPECT_EQ(out().find("eds:"), std::string::npos);
        EXPECT_EQ(out().find("- for standard input") != std::string::npos, command == "list");
    }
}

TEST_F(CommandLineTest, ShowsTheUsageWithoutArguments)
{
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(out(), "");
    EXPECT_TRUE(err().starts_with("Usage:\n")) << err();
    EXPECT_NE(err().find("dunmora-cli fields [FIELDS]"), std::string::npos);
}

TEST_F(CommandLineTest, RefusesUnknownArguments)
{
    expectWrongUse({"tidy"}, "A command is needed");
    expectWrongUse({"--yes"}, "A command is needed");
    expectWrongUse({"list"}, "ADDRESS-BOOK");
    expectWrongUse({"delete", "--yes"}, "ADDRESS-BOOK");
    expectWrongUse({"list", "book.vcf", "second.vcf"}, "second.vcf");
    expectWrongUse({"list", "book.vcf", "--yes"}, "--yes");
    expectWrongUse({"list", "book.vcf", "--format", "xml"}, "xml");
    expectWrongUse({"delete", "book.vcf", "--yes", "--format", "csv"}, "csv");
    expectWrongUse({"list", "book.vcf", "--format"}, "--format");
    expectWrongUse({"list", "book.vcf", "--match"}, "--match");
    expectWrongUse({"list", "book.vcf", "--format=json", "--format=csv"}, "--format");
    expectWrongUse({"list", ""}, "empty");
    expectWrongUse({"delete", "book.vcf", "--yes", "--backup="}, "backup");
    expectWrongUse({"fields", "home", "work"}, "work");
}

TEST_F(CommandLineTest, SuggestsTheCommandThatWasProbablyMeant)
{
    for (const auto& [typed, meant] :
         std::vector<std::pair<std::string, std::string>>{{"lst", "list"},
                                                          {"lsit", "list"},
                                                          {"LIST", "list"},
                                                          {"delte", "delete"},
                                                          {"hlp", "help"},
                                                          {"bookss", "books"}}) {
        std::string text = "There is no command “";
        text += typed;
        text += "”. Did you mean “";
        text += meant;
        text += "”? See: dunmora-cli help\n";
        expectWrongUse({typed, "book.vcf"}, text);
    }
    expectWrongUse({"lst", "show", "book.vcf", "ann"}, "There is no command “lst”");
    expectWrongUse({"lst", "--help"}, "There is no command “lst”");
}

TEST_F(CommandLineTest, NamesTheCommandsWhenNoneIsNear)
{
    expectWrongUse({"tidy"}, "There is no command “tidy”. A command is needed: list, delete, "
                             "restore, show, diff, fields, books or help. See: dunmora-cli help\n");
    expectWrongUse({""}, "There is no command “”. A command is needed");
}

TEST_F(CommandLineTest, BlamesTheUnknownOptionAndNotWhatFollowsIt)
{
    const std::string kText =
        "list has no option “--formt”. Did you mean “--format”? See: dunmora-cli help list\n";
    expectWrongUse({"list", "--formt", "json", "one.vcf"}, kText);
    expectWrongUse({"list", "one.vcf", "--formt=json"}, kText);
    expectWrongUse({"list", "one.vcf", "--match", "home", "--formt", "json"}, kText);
    expectWrongUse({"list", "--formt"}, kText);
    expectWrongUse(
        {"--formt", "json", "one.vcf"},
        "There is no option “--formt”. Did you mean “--format”? See: dunmora-cli help\n");
    expectWrongUse({"delete", "one.vcf", "-backup", "new.vcf"},
                   "delete has no option “-backup”. Did you mean “--backup”?");
    expectWrongUse({"list", "one.vcf", "--colour"},
                   "list has no option “--colour”. See: dunmora-cli help list\n");
}

TEST_F(CommandLineTest, TakesTheValueOfAnOptionForNoOption)
{
    expectWrongUse({"delete", "one.vcf", "--check", "--odd", "two.vcf"}, "not expected: two.vcf");
    expectWrongUse({"list", "one.vcf", "--", "--three"}, "not expected: --three");
}

TEST_F(CommandLineTest, NamesTheHelpOfTheCommand)
{
    expectWrongUse({"list"}, "ADDRESS-BOOK is required. See: dunmora-cli help list\n");
    expectWrongUse({"--yes", "delete"}, "A command is needed before “--yes”: list, delete,");
}

TEST_F(CommandLineTest, PrintsTheHelpOfACommandByItsName)
{
    for (const auto& command : kCommands) {
        EXPECT_EQ(run({command, "--help"}), 0) << command;
        const auto help = out();
        EXPECT_EQ(run({"help", command}), 0) << command;
        EXPECT_EQ(out(), help);
        EXPECT_EQ(err(), "");
    }

    run({"--help"});
    const auto help = out();
    EXPECT_EQ(run({"help"}), 0);
    EXPECT_EQ(out(), help);
}

TEST_F(CommandLineTest, HasNoHelpForAnUnknownCommand)
{
    expectWrongUse({"help", "nonsense"}, "There is no command “nonsense”. A command is needed");
    expectWrongUse({"help", "lst"}, "Did you mean “list”?");
    expectWrongUse({"help", "list", "show"}, "show");
}

TEST_F(CommandLineTest, EndsTheHelpOfEachCommandWithTwoExamples)
{
    for (const auto& command : kCommands) {
        run({"help", command});

        const auto examples = examplesIn(out());
        ASSERT_EQ(examples.size(), 2U) << out();
        for (const auto& example : examples) {
            EXPECT_TRUE(example.starts_with("dunmora-cli " + command)) << example;
            EXPECT_NO_THROW(parseCommandLine(argumentsOf(example), "", "")) << example;
        }
    }
}

TEST_F(CommandLineTest, ShowsNoControlCharacterOfAWrongArgument)
{
    expectWrongUse({"list", "book.vcf", "\x1b[2J\nsecond"}, "␛[2J␊second");
}

TEST_F(CommandLineTest, NamesTheMatchFieldsWhenOneIsUnknown)
{
    const std::string kAll = "firstname,lastname,nickname,home,work,mobile";
    expectWrongUse({"list", "book.vcf", "--match", "firstname,email"}, "“email”");
    expectWrongUse({"list", "book.vcf", "--match", "firstname,email"}, kAll);
    expectWrongUse({"list", "book.vcf", "--match", "Firstname"}, "“Firstname”");
    expectWrongUse({"delete", "book.vcf", "--yes", "--match", "fname"}, "“fname”");
    expectWrongUse({"fields", "phone"}, "“phone”");
}

TEST_F(CommandLineTest, RefusesAnEmptyNameBetweenMatchFields)
{
    expectWrongUse({"list", "book.vcf", "--match", "firstname,"}, "“”");
    expectWrongUse({"list", "book.vcf", "--match", ",firstname"}, "“”");
    expectWrongUse({"list", "book.vcf", "--match", "firstname,,home"}, "“”");
}

TEST_F(CommandLineTest, IgnoresBlanksAroundMatchFields)
{
    bookHoldsAnnTwice();

    EXPECT_EQ(run({"list", "book.vcf", "--match", " firstname , lastname\t"}), 0);
    EXPECT_NE(out().find("2 duplicates of 3"), std::string::npos);
}

TEST_F(CommandLineTest, AsksForAtLeastOneMatchField)
{
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"list", "book.vcf", "--match", ""},
                                               {"list", "book.vcf", "--match", "  "},
                                               {"list", "book.vcf", "--match="},
                                               {"list", "--match=", "book.vcf"},
                                               {"delete", "book.vcf", "--yes", "--match", ""},
                                               {"fields", ""}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(out(), "");
        EXPECT_EQ(err(), "You should choose at least one field as match condition!\n");
    }
}

TEST_F(CommandLineTest, OpensTheAddressBookByTheGivenName)
{
    run({"list", "book.vcf"});
    run({"list", "list"});
    run({"list", "--", "--odd--"});
    run({"list", "--match", "home", "my people"});

    EXPECT_EQ(opened_, (std::vector<std::string>{"book.vcf", "list", "--odd--", "my people"}));
}

}  // namespace
}  // namespace dunmora::test
