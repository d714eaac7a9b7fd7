#include "adapters/vcard/VCardStreamBook.h"

#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <cstring>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

class VCardStreamBookTest : public FileTest {
protected:
    static FileBytes bytesOf(std::string_view text)
    {
        auto memory = FileBytes::allocate(text.size());
        std::memcpy(memory.get(), text.data(), text.size());
        return {std::move(memory), text.size()};
    }

    VCardStreamBook bookOf(const std::string& content)
    {
        return VCardStreamBook(
            {"-", "standard input"},
            [this, content](std::uintmax_t largest) {
                ++readings_;
                largest_ = largest;
                return bytesOf(content);
            },
            kLargest);
    }

    static constexpr std::uintmax_t kLargest = 1000;
    int readings_ = 0;
    std::uintmax_t largest_ = 0;
};

TEST_F(VCardStreamBookTest, ListsThePeopleOfTheStream)
{
    auto book = bookOf(card("a") + card("b"));
    EXPECT_EQ(readings_, 0);

    const auto people = book.readPeople();

    EXPECT_EQ(uidsOf(people), (Texts{"a", "b"}));
    EXPECT_EQ(largest_, kLargest);
    EXPECT_EQ(*people[0].source, (PersonSource{"-", "standard input"}));
    EXPECT_EQ(book.card("b").value().source, (PersonSource{"-", "standard input"}));
    EXPECT_EQ(book.card("c"), std::nullopt);
    const std::vector<const Person*> last{&people[1]};
    EXPECT_EQ(book.cards(last), card("b"));
}

TEST_F(VCardStreamBookTest, ReadsTheStreamOnce)
{
    auto book = bookOf(card("a"));

    book.readPeople();
    EXPECT_EQ(uidsOf(book.readPeople()), (Texts{"a"}));
    EXPECT_EQ(uidsOf(book.people()), (Texts{"a"}));
    EXPECT_EQ(readings_, 1);
}

TEST_F(VCardStreamBookTest, HasTheRemarksOfAFile)
{
    auto book = bookOf("BEGIN:VCARD\r\n" + card("a"));

    book.readPeople();

    EXPECT_EQ(book.notes().cardsSkipped, 1U);
    EXPECT_EQ(book.notes().remarks,
              (Texts{"1 card in “standard input” (line 1) was skipped because it breaks off or has "
                     "no properties. It stays in the file unchanged."}));
}

TEST_F(VCardStreamBookTest, ReadsUtf16)
{
    auto book = bookOf("\xFF\xFE" + utf16Little(card("a")));

    EXPECT_EQ(uidsOf(book.readPeople()), (Texts{"a"}));
}

TEST_F(VCardStreamBookTest, RemovesNobody)
{
    auto book = bookOf(card("a"));
    const auto people = book.people();

    EXPECT_EQ(failureOf([&] { book.removeRecord(people[0]); }),
              "“standard input” cannot be changed.");
    book.save();
    EXPECT_EQ(uidsOf(book.people()), (Texts{"a"}));
}

TEST_F(VCardStreamBookTest, ReportsThatTheStreamCannotBeRead)
{
    VCardStreamBook book({"-", "standard input"},
                         [](std::uintmax_t) -> FileBytes { throw PlatformError("broken"); });

    EXPECT_EQ(failureOf([&] { book.readPeople(); }), "broken");
    EXPECT_TRUE(book.notes().remarks.empty());
}

}  // namespace
}  // namespace dunmora::test
