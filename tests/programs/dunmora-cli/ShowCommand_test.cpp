#include "tests/fakes/FakeCard.h"
#include "tests/programs/dunmora-cli/CliTest.h"
#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <string>
#include <vector>

namespace dunmora::test {
namespace {

FakePerson holding(FakePerson person, std::vector<CardProperty> properties)
{
    person.modified.reset();
    person.properties = std::move(properties);
    return person;
}

class ShowCommandTest : public CliTest {
protected:
    ShowCommandTest()
    {
        auto ann = holding(named("ann-1", "Ann"),
                           {textProperty("EMAIL", "ann@example.org", "work"),
                            textProperty("NOTE", "first\nsecond"),
                            {"PHOTO", {}, {}, CardProperty::Binary{"image/jpeg", "jpeg"}}});
        ann.lists = {"Choir"};
        auto other = holding(named("ann-2", "Ann"), {textProperty("EMAIL", "ANN@example.ORG"),
                                                     textProperty("ORG", "Acme")});
        other.source = {"old/phone.vcf", "phone.vcf"};
        bookHolds({ann, other, holding(named("ben", "Ben"), {})});
    }
};

TEST_F(ShowCommandTest, PrintsWholeCards)
{
    EXPECT_EQ(run({"show", "book.vcf", "ann-1", "ben"}), 0);

    EXPECT_EQ(out(), "ann-1 in “people.vcf”\n"
                     "  VERSION        3.0\n"
                     "  UID            ann-1\n"
                     "  Name           Ann Lee\n"
                     "  E-mail (work)  ann@example.org\n"
                     "  Note           first\n"
                     "                 second\n"
                     "  Photo          image/jpeg, 1 KB\n"
                     "  In the list    Choir\n"
                     "\n"
                     "ben in “people.vcf”\n"
                     "  VERSION  3.0\n"
                     "  UID      ben\n"
                     "  Name     Ben Lee\n");
    EXPECT_EQ(err(), "");
    EXPECT_EQ(opened_, (std::vector<std::string>{"book.vcf"}));
}

TEST_F(ShowCommandTest, PrintsWholeCardsAsExactlyThisJson)
{
    EXPECT_EQ(run({"show", "book.vcf", "ann-1", "--format", "json"}), 0);

    EXPECT_EQ(out(),
              R"({"schema":1,"addressBook":"book.vcf","cards":[{"uid":"ann-1",)"
              R"("source":"people.vcf","lists":["Choir"],"properties":[)"
              R"({"property":"VERSION","label":"","components":["3.0"]},)"
              R"({"property":"UID","label":"","components":["ann-1"]},)"
              R"({"property":"N","label":"","components":["Lee","Ann"]},)"
              R"({"property":"EMAIL","label":"work","components":["ann@example.org"]},)"
              R"({"property":"NOTE","label":"","components":["first\nsecond"]},)"
              R"({"property":"PHOTO","label":"","mediaType":"image/jpeg","base64":"anBlZw=="}]}]})"
              "\n");
}

TEST_F(ShowCommandTest, PrintsWhatDiffers)
{
    EXPECT_EQ(run({"diff", "book.vcf", "ann-1", "ann-2"}), 0);

    EXPECT_EQ(out(), "--- ann-1 in “people.vcf”\n"
                     "+++ ann-2 in “phone.vcf”\n"
                     "- E-mail (work)  ann@example.org\n"
                     "- Note           first\n"
                     "-                second\n"
                     "- Photo          image/jpeg, 1 KB\n"
                     "- In the list    Choir\n"
                     "+ E-mail         ANN@example.ORG\n"
                     "+ Organisation   Acme\n");
}

TEST_F(ShowCommandTest, PrintsWhatDiffersAsExactlyThisJson)
{
    EXPECT_EQ(run({"diff", "book.vcf", "ann-2", "ben", "--format", "json"}), 0);

    EXPECT_EQ(out(), R"({"schema":1,"addressBook":"book.vcf","people":[{"uid":"ann-2",)"
                     R"("source":"old/phone.vcf","only_here":[)"
                     R"({"property":"N","value":"Ann Lee"},)"
                     R"({"property":"EMAIL","value":"ANN@example.ORG"},)"
                     R"({"property":"ORG","value":"Acme"}]},)"
                     R"({"uid":"ben","source":"people.vcf","only_here":[)"
                     R"({"property":"N","value":"Ben Lee"}]}]})"
                     "\n");
}

TEST_F(ShowCommandTest, SaysThatNothingDiffers)
{
    EXPECT_EQ(run({"diff", "book.vcf", "ben", "ben"}), 0);

    EXPECT_EQ(out(), "Both cards hold the same.\n");
}

TEST_F(ShowCommandTest, ShowsNoControlCharacter)
{
    bookHolds({holding(named("a\x1b", "Ann"), {textProperty("NOTE", "\x1b[2J\r\n\x1b[31m", "\x1b"),
                                               textProperty("X-\x1b", "x")})});

    EXPECT_EQ(run({"show", "book.vcf", "a\x1b"}), 0);
    EXPECT_EQ(out().find('\x1b'), std::string::npos) << out();
    EXPECT_EQ(out().find('\r'), std::string::npos) << out();
    EXPECT_NE(out().find("␛[31m"), std::string::npos) << out();

    EXPECT_EQ(run({"show", "book.vcf", "b\x1b"}), 2);
    EXPECT_EQ(err(), "dunmora-cli: Nobody has the uid “b␛”.\n");
}

TEST_F(ShowCommandTest, PrintsNothingWhenSomebodyIsUnknown)
{
    EXPECT_EQ(run({"show", "book.vcf", "ann-1", "cid"}), 2);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "dunmora-cli: Nobody has the uid “cid”.\n");

    EXPECT_EQ(run({"diff", "book.vcf", "cid", "ben"}), 2);
    EXPECT_EQ(out(), "");
}

TEST_F(ShowCommandTest, ReportsTheNotesOfTheBook)
{
    book_.readingNotes.remarks = {"2 cards were skipped."};

    run({"show", "book.vcf", "ben"});
    EXPECT_EQ(err(), "dunmora-cli: note: 2 cards were skipped.\n");

    run({"show", "book.vcf", "ben", "--quiet"});
    EXPECT_EQ(err(), "");
}

TEST_F(ShowCommandTest, RefusesABookWithoutCards)
{
    environment_.openAddressBook = [this](const std::string& /*name*/) {
        auto book = lent(book_);
        book.cardSource = nullptr;
        return book;
    };

    EXPECT_EQ(run({"show", "book.vcf", "ben"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: This address book has no cards to show.\n");
}

TEST_F(ShowCommandTest, NeedsPeopleToShow)
{
    EXPECT_EQ(run({"show", "book.vcf"}), 2);
    EXPECT_EQ(run({"diff", "book.vcf", "ann-1"}), 2);
    EXPECT_EQ(run({"diff", "book.vcf", "ann-1", "ann-2", "ben"}), 2);
    EXPECT_EQ(run({"show", "", "ben"}), 2);
}

}  // namespace
}  // namespace dunmora::test
