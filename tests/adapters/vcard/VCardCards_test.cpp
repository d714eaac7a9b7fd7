#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

class VCardCardsTest : public BookTest {
protected:
    static std::string withNote(const std::string& uid, const std::string& note)
    {
        return "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + uid + "\r\nNOTE:" + note +
               "\r\nEND:VCARD\r\n";
    }

    static Texts notesOf(const VCardAddressBook& book, std::string_view uid)
    {
        Texts notes;
        const auto card = book.card(uid).value();
        for (const auto& property : card.properties) {
            if (property.name == "NOTE") {
                notes.push_back(property.components.at(0));
            }
        }
        return notes;
    }

    std::filesystem::path folder() const { return file().parent_path(); }
};

TEST_F(VCardCardsTest, AreReadFromUtf16)
{
    write(file(), "\xFF\xFE" + utf16Little(withNote("a", "one") + withNote("b", "two")));
    VCardAddressBook book(file());
    book.readPeople();

    EXPECT_EQ(notesOf(book, "a"), (Texts{"one"}));
    EXPECT_EQ(notesOf(book, "b"), (Texts{"two"}));
}

TEST_F(VCardCardsTest, AreReadFromUtf16AfterCharactersOfEverySize)
{
    // Two, three and four bytes as UTF-8: U+00E9, U+20AC, U+1F600; half of such a pair; NUL.
    const std::string odd("\xE9\x00\xAC\x20\x3D\xD8\x00\xDE\x3D\xD8\x00\x00", 12);
    const auto begin = utf16Little("BEGIN:VCARD\r\nVERSION:3.0\r\nUID:a\r\nNOTE:");
    write(file(), "\xFF\xFE" + odd + utf16Little("\r\n") + begin + odd +
                      utf16Little("\r\nEND:VCARD\r\n" + withNote("b", "two")));
    VCardAddressBook book(file());
    book.readPeople();

    EXPECT_EQ(notesOf(book, "a"),
              (Texts{std::string("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD\0", 13)}));
    EXPECT_EQ(notesOf(book, "b"), (Texts{"two"}));
}

TEST_F(VCardCardsTest, StayThoseOfTheirPeopleThroughDeletions)
{
    write(path("a.vcf"), withNote("a", "one") + withNote("b", "two") + withNote("c", "three"));
    write(path("b.vcf"), withNote("d", "four") + withNote("e", "five") + withNote("f", "six"));
    VCardAddressBook book(folder());
    book.readPeople();

    ask(book, {"a", "e"});
    book.save();
    ask(book, {"c", "d"});
    book.save();

    const auto people = book.people();
    ASSERT_EQ(uidsOf(people), (Texts{"b", "f"}));
    const std::vector<const Person*> last{&people[1]};
    EXPECT_EQ(book.cards(last), withNote("f", "six"));
    EXPECT_EQ(contentOf(path("a.vcf")), withNote("b", "two"));
    EXPECT_EQ(contentOf(path("b.vcf")), withNote("f", "six"));
    EXPECT_EQ(notesOf(book, "d"), (Texts{"four"}));
    EXPECT_EQ(notesOf(book, "f"), (Texts{"six"}));
}

TEST_F(VCardCardsTest, AreThoseOfTheIdsThatTheBookHasGiven)
{
    write(file(), withNote("a", "one") + withNote("a", "two") + withNote("", "three"));
    VCardAddressBook book(file());
    const auto people = book.readPeople();

    ASSERT_EQ(people.size(), 3U);
    EXPECT_EQ(notesOf(book, people[0].uid), (Texts{"one"}));
    EXPECT_EQ(notesOf(book, people[1].uid), (Texts{"two"}));
    EXPECT_EQ(notesOf(book, people[2].uid), (Texts{"three"}));
}

TEST_F(VCardCardsTest, CanBeComparedWithoutBeingRead)
{
    const std::string rest = "\r\nFN:Ann\r\nEND:VCARD\r\n";
    write(file(), "BEGIN:VCARD\r\nUID:a" + rest + "BEGIN:VCARD\r\nUID:b" + rest +
                      "BEGIN:VCARD\r\nUID:c" + withNote("d", "x"));
    VCardAddressBook book(file());

    book.readPeople();

    ASSERT_TRUE(book.storedCard("a"));
    EXPECT_EQ(book.storedCard("a")->parts, book.storedCard("b")->parts);
    EXPECT_EQ(*book.storedCard("a")->source, book.card("a")->source);
    EXPECT_FALSE(book.storedCard("d"));
    EXPECT_FALSE(book.storedCard("e"));
}

TEST_F(VCardCardsTest, CannotBeComparedInListsOrUtf16WithoutBeingRead)
{
    const std::string card = "BEGIN:VCARD\r\nUID:a\r\nFN:Ann\r\nEND:VCARD\r\n";
    VCardAddressBook book(file());
    write(file(), card + "BEGIN:VCARD\r\nKIND:group\r\nFN:List\r\nMEMBER:b\r\nEND:VCARD\r\n");
    book.readPeople();
    EXPECT_FALSE(book.storedCard("a"));

    write(file(), "\xFF\xFE" + utf16Little(card));
    book.readPeople();

    EXPECT_TRUE(book.card("a"));
    EXPECT_FALSE(book.storedCard("a"));
}

TEST_F(VCardCardsTest, NameTheFileAsTheFolderReachesIt)
{
    write(path("a.vcf"), withNote("a", "one"));
    write(path("b.vcf"), withNote("b", "two"));
    VCardAddressBook book(folder());
    const auto people = book.readPeople();

    ASSERT_EQ(people.size(), 2U);
    EXPECT_EQ(*people[0].source, (PersonSource{path("a.vcf").string(), "a.vcf"}));
    EXPECT_EQ(book.card("b")->source, (PersonSource{path("b.vcf").string(), "b.vcf"}));
    VCardAddressBook opened(people[1].source->address);
    EXPECT_EQ(uidsOf(opened.readPeople()), (Texts{"b"}));
}

TEST_F(VCardCardsTest, NameTheListsOfOtherFiles)
{
    write(path("a.vcf"), withNote("a", "one"));
    write(path("lists.vcf"), "BEGIN:VCARD\r\nVERSION:4.0\r\nKIND:group\r\nFN:Choir\r\nMEMBER:urn:"
                             "uuid:a\r\nEND:VCARD\r\n");
    VCardAddressBook book(folder());
    book.readPeople();

    EXPECT_EQ(book.card("a")->lists, (Texts{"Choir"}));
}

TEST_F(VCardCardsTest, AreThoseOfTheReadingAfterTheFileHasChanged)
{
    write(file(), withNote("a", "one"));
    VCardAddressBook book(file());
    book.readPeople();

    write(file(), withNote("a", "two"));

    EXPECT_EQ(notesOf(book, "a"), (Texts{"one"}));
    book.readPeople();
    EXPECT_EQ(notesOf(book, "a"), (Texts{"two"}));
}

}  // namespace
}  // namespace dunmora::test
