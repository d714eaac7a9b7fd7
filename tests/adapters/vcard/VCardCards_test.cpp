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

    static bool compare(const VCardAddressBook& book, const Texts& uids,
                        CardDifferences& differences)
    {
        return book.compareStored(uids, differences);
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
    write(path("a.vcf"), "BEGIN:VCARD\r\nUID:a" + rest + withNote("d", "x"));
    write(path("b.vcf"), "BEGIN:VCARD\r\nNOTE:n\r\nUID:b" + rest);
    VCardAddressBook book(folder());
    CardDifferences differences;

    book.readPeople();

    ASSERT_TRUE(compare(book, {"a", "b"}, differences));
    EXPECT_EQ(differences.names, (Texts{"UID", "NOTE"}));
    ASSERT_EQ(differences.sources.size(), 2U);
    EXPECT_EQ(*differences.sources[0], book.card("a")->source);
    EXPECT_EQ(*differences.sources[1], book.card("b")->source);
    ASSERT_TRUE(compare(book, {"b"}, differences));
    EXPECT_EQ(differences.names, Texts{});
    EXPECT_EQ(differences.sources.size(), 1U);
    EXPECT_FALSE(compare(book, {"a", "d"}, differences));
    EXPECT_FALSE(compare(book, {"a", "e"}, differences));
}

TEST_F(VCardCardsTest, CanBeReadForSomeNamesOnly)
{
    write(file(), withNote("a", "one") + "BEGIN:VCARD\r\nUID:b\r\nitem1.note:two\r\n  x\r\nNOTE:"
                                         "three\r\nFN:Ann\r\nEND:VCARD\r\n");
    VCardAddressBook book(file());
    book.readPeople();
    const Texts names{"NOTE", "FN"};

    const auto properties = book.propertiesNamed("b", names);

    const auto all = book.card("b")->properties;
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(properties, std::vector<CardProperty>(all.begin() + 1, all.end()));
    EXPECT_EQ(book.propertiesNamed("b", {}), std::vector<CardProperty>());
    EXPECT_EQ(book.propertiesNamed("c", names), std::nullopt);
}

TEST_F(VCardCardsTest, CannotBeComparedInListsOrUtf16WithoutBeingRead)
{
    const std::string card = "BEGIN:VCARD\r\nUID:a\r\nFN:Ann\r\nEND:VCARD\r\n";
    VCardAddressBook book(file());
    CardDifferences differences;
    write(file(), card + "BEGIN:VCARD\r\nKIND:group\r\nFN:List\r\nMEMBER:b\r\nEND:VCARD\r\n");
    book.readPeople();
    EXPECT_FALSE(compare(book, {"a"}, differences));
    EXPECT_EQ(book.propertiesNamed("a", {}), std::nullopt);

    write(file(), "\xFF\xFE" + utf16Little(card));
    book.readPeople();

    EXPECT_TRUE(book.card("a"));
    EXPECT_FALSE(compare(book, {"a"}, differences));
    EXPECT_EQ(book.propertiesNamed("a", {}), std::nullopt);
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
