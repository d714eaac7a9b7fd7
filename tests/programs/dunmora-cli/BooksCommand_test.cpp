#include "platform/PlatformError.h"
#include "tests/programs/dunmora-cli/CliTest.h"
#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <algorithm>

namespace dunmora::test {
namespace {

class BooksCommandTest : public CliTest {
protected:
    BooksCommandTest()
    {
        environment_.listDesktopBooks = [this] { return books_; };
        environment_.listDesktopBookNames = [this] { return names_; };
    }

    std::vector<DesktopBook> books_ = {
        {"system-address-book", "Personal", "local", true, 120, ""},
        {"c0ffee", "Firma Grün", "carddav", false, 7, ""},
        {"beef", "Server", "ldap", std::nullopt, std::nullopt, "It is away."},
    };
    std::vector<DesktopBook> names_ = {
        {"system-address-book", "Personal", "local", std::nullopt, std::nullopt, ""},
        {"beef", "Server", "ldap", std::nullopt, std::nullopt, ""},
    };
};

TEST_F(BooksCommandTest, PrintsATable)
{
    EXPECT_EQ(run({"books"}), 0);

    EXPECT_EQ(out(), "UID                  Name        Kind     Writable  People\n"
                     "system-address-book  Personal    local    yes       120\n"
                     "c0ffee               Firma Grün  carddav  no        7\n"
                     "beef                 Server      ldap     ?         ?\n");
    EXPECT_EQ(err(), "dunmora-cli: note: “Server” could not be read: It is away.\n");
}

TEST_F(BooksCommandTest, ReadsNoBookForTheNamesAlone)
{
    environment_.listDesktopBooks = nullptr;

    EXPECT_EQ(run({"books", "--names"}), 0);

    EXPECT_EQ(out(), "UID                  Name      Kind   Writable  People\n"
                     "system-address-book  Personal  local  ?         ?\n"
                     "beef                 Server    ldap   ?         ?\n");
    EXPECT_EQ(err(), "");
}

// The completions for shells take them from this text, without a parser for JSON.
TEST_F(BooksCommandTest, BeginsEveryBookInJsonWithTheUidAndTheName)
{
    names_ = {{"a", R"("Nick")", "local", std::nullopt, std::nullopt, ""},
              {"b", "", "local", std::nullopt, std::nullopt, ""}};

    EXPECT_EQ(run({"books", "--names", "--format", "json"}), 0);

    EXPECT_TRUE(out().starts_with(R"({"schema":1,"books":[{"uid":"a","name":"\"Nick\"",)"))
        << out();
    EXPECT_NE(out().find(R"(},{"uid":"b","name":"",)"), std::string::npos) << out();
}

TEST_F(BooksCommandTest, AlignsEvenTheLongestName)
{
    const std::string endless(60, 'n');
    books_ = {{"a", endless, "local", true, 1, ""}, {"b", "Personal", "local", true, 2, ""}};

    EXPECT_EQ(run({"books"}), 0);

    EXPECT_NE(out().find("\na    " + endless + "  local"), std::string::npos) << out();
    EXPECT_NE(out().find("\nb    Personal" + std::string(52, ' ') + "  local"), std::string::npos)
        << out();
}

TEST_F(BooksCommandTest, GivesEachValueALineWhereTheTableIsTooWide)
{
    environment_.outIsTerminal = true;
    environment_.outColumns = 40;
    books_ = {{"system-address-book", "Personal", "local", true, 120, ""},
              {"c0ffee", "Firma Grün", "carddav", false, 7, ""}};

    EXPECT_EQ(run({"books"}), 0);
    EXPECT_EQ(out(), "Name      Personal\n"
                     "Kind      local\n"
                     "Writable  yes\n"
                     "People    120\n"
                     "UID       system-address-book\n"
                     "\n"
                     "Name      Firma Grün\n"
                     "Kind      carddav\n"
                     "Writable  no\n"
                     "People    7\n"
                     "UID       c0ffee\n");

    EXPECT_EQ(run({"books", "--wide"}), 0);
    EXPECT_TRUE(out().starts_with("UID                  Name        Kind")) << out();

    environment_.outColumns = 60;
    EXPECT_EQ(run({"books"}), 0);
    EXPECT_TRUE(out().starts_with("UID                  Name        Kind")) << out();
}

TEST_F(BooksCommandTest, PrintsJson)
{
    EXPECT_EQ(run({"books", "--format", "json"}), 0);

    EXPECT_EQ(jsonAt(out()), jsonAt(R"({"schema":1,"books":[
        {"uid":"system-address-book","name":"Personal","kind":"local","writable":true,
         "people":120,"failure":null},
        {"uid":"c0ffee","name":"Firma Grün","kind":"carddav","writable":false,
         "people":7,"failure":null},
        {"uid":"beef","name":"Server","kind":"ldap","writable":null,
         "people":null,"failure":"It is away."}]})"));
}

TEST_F(BooksCommandTest, EscapesEverythingOutsideAsciiInJsonForATerminal)
{
    environment_.outIsTerminal = true;

    EXPECT_EQ(run({"books", "--format", "json"}), 0);

    EXPECT_NE(out().find(R"("name":"Firma Gr\u00fcn")"), std::string::npos) << out();
}

TEST_F(BooksCommandTest, IsQuietWhenAsked)
{
    EXPECT_EQ(run({"books", "--quiet"}), 0);

    EXPECT_EQ(err(), "");
}

TEST_F(BooksCommandTest, ShowsNoControlCharacterOfAName)
{
    books_ = {{"x", "evil\x1b[2J\nname", "local", true, 0, ""}};

    EXPECT_EQ(run({"books"}), 0);

    const auto printed = out();
    EXPECT_EQ(printed.find('\x1b'), std::string::npos);
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 2);
}

TEST_F(BooksCommandTest, ReportsWhyTheDesktopCannotBeReached)
{
    environment_.listDesktopBooks = []() -> std::vector<DesktopBook> {
        throw PlatformError("There is no desktop.");
    };

    EXPECT_EQ(run({"books"}), 1);

    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "dunmora-cli: There is no desktop.\n");
}

TEST_F(BooksCommandTest, RejectsOtherFormats)
{
    EXPECT_EQ(run({"books", "--format", "csv"}), 2);
}

}  // namespace
}  // namespace dunmora::test
