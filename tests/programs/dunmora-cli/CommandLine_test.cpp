#include "tests/programs/dunmora-cli/CliTest.h"

#include <algorithm>

namespace dunmora::test {
namespace {

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
    for (const std::string part :
         {"ADDRESS-BOOK", "--match", "--format", "--quiet", "csv", "local time"}) {
        EXPECT_NE(out().find(part), std::string::npos) << part;
    }

    EXPECT_EQ(run({"delete", "--help"}), 0);
    for (const std::string part :
         {"ADDRESS-BOOK", "--match", "--check", "--uncheck", "--keep-one", "--dry-run", "--yes",
          "--backup", "--allow-last-copy", "--allow-blank-match", "--format", "--quiet"}) {
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
