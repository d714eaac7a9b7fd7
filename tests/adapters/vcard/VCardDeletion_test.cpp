#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;

constexpr std::string_view kMark = "\xEF\xBB\xBF";

class VCardDeletionTest : public BookTest {
protected:
    /// Removes these people from a file with this content. Returns the new content.
    std::string without(const Uids& uids, const std::string& content)
    {
        write(file(), content);
        removeFrom(file(), uids);
        EXPECT_EQ(namesIn(folder()), (std::set<std::string>{"book.vcf"}));
        return contentOf(file());
    }
};

class VCardDeletionByLineEnd : public VCardDeletionTest,
                               public testing::WithParamInterface<std::string> {};

TEST_P(VCardDeletionByLineEnd, CutsTheFirstCard)
{
    const auto& end = GetParam();

    EXPECT_EQ(without({"a"}, card("a", end) + card("b", end) + card("c", end)),
              card("b", end) + card("c", end));
}

TEST_P(VCardDeletionByLineEnd, CutsTheMiddleCard)
{
    const auto& end = GetParam();

    EXPECT_EQ(without({"b"}, card("a", end) + card("b", end) + card("c", end)),
              card("a", end) + card("c", end));
}

TEST_P(VCardDeletionByLineEnd, CutsTheLastCard)
{
    const auto& end = GetParam();

    EXPECT_EQ(without({"c"}, card("a", end) + card("b", end) + card("c", end)),
              card("a", end) + card("b", end));
}

TEST_P(VCardDeletionByLineEnd, CutsALastCardWithoutALineEnd)
{
    const auto& end = GetParam();
    auto last = card("c", end);
    last.resize(last.size() - end.size());

    EXPECT_EQ(without({"c"}, card("a", end) + card("b", end) + last),
              card("a", end) + card("b", end));
    EXPECT_EQ(without({"b"}, card("a", end) + card("b", end) + last), card("a", end) + last);
}

TEST_P(VCardDeletionByLineEnd, KeepsTextBetweenTheCards)
{
    const auto& end = GetParam();
    const auto book = [&](const std::string& middle) {
        return "before" + end + end + card("a", end) + "between" + end + middle + end + "\t " +
               end + card("c", end) + "after";
    };

    EXPECT_EQ(without({"b"}, book(card("b", end))), book(""));
}

INSTANTIATE_TEST_SUITE_P(LineEnds, VCardDeletionByLineEnd,
                         testing::Values("\r\n", "\n", "\r", "\r\r\n"));

TEST_F(VCardDeletionTest, KeepsMixedLineEnds)
{
    const std::string odd = "BEGIN:VCARD\rVERSION:3.0\nUID:b\r\nFN:B\rEND:VCARD\n";

    EXPECT_EQ(without({"a"}, card("a", "\r") + odd + card("c", "\n")), odd + card("c", "\n"));
    EXPECT_EQ(without({"b"}, card("a", "\r") + odd + card("c", "\n")),
              card("a", "\r") + card("c", "\n"));
}

TEST_F(VCardDeletionTest, KeepsTheByteOrderMarkOfARemovedFirstCard)
{
    EXPECT_EQ(without({"a"}, std::string(kMark) + card("a") + card("b")),
              std::string(kMark) + card("b"));
    EXPECT_EQ(uidsIn(file()), (Uids{"b"}));
}

TEST_F(VCardDeletionTest, KeepsMarksBetweenTheCardsOfConcatenatedFiles)
{
    const std::string mark(kMark);

    EXPECT_EQ(without({"b"}, mark + card("a") + mark + card("b") + mark + card("c")),
              mark + card("a") + mark + mark + card("c"));
}

TEST_F(VCardDeletionTest, CutsBlanksBeforeBeginWithTheirCard)
{
    EXPECT_EQ(without({"b"}, card("a") + "  " + card("b") + card("c")), card("a") + card("c"));
}

TEST_F(VCardDeletionTest, KeepsBytesThatAreNotText)
{
    using namespace std::string_literals;
    const auto binary = "\0\x01\xFF\xFE\x80 junk\r\n"s;

    EXPECT_EQ(without({"b"}, card("a") + binary + card("b") + binary), card("a") + binary + binary);
}

TEST_F(VCardDeletionTest, KeepsSkippedAndGroupCards)
{
    const std::string open = "BEGIN:VCARD\r\nFN:No end\r\n";
    const std::string hollow = "BEGIN:VCARD\r\nEND:VCARD\r\n";
    const std::string group = "BEGIN:VCARD\r\nVERSION:4.0\r\nKIND:group\r\nFN:Us\r\nEND:VCARD\r\n";

    EXPECT_EQ(without({"a", "b"}, group + card("a") + hollow + open + card("b") + open),
              group + hollow + open + open);
}

TEST_F(VCardDeletionTest, IsRefusedWhenAnotherCardWouldBeReadDifferently)
{
    // Without b, the END line after it would complete the card before it.
    const auto content = card("a") + "BEGIN:VCARD\r\nFN:Open\r\n" + card("b") + "END:VCARD\r\n";
    write(file(), content);

    EXPECT_EQ(failureOf([&] { removeFrom(file(), {"b"}); }),
              about(file(), "was not changed: without the people to be deleted, others in it would "
                            "be read differently. Nobody was deleted. Correct the skipped cards in "
                            "it, or uncheck the people next to them."));

    EXPECT_EQ(contentOf(file()), content);
    EXPECT_EQ(without({"a"}, content), content.substr(card("a").size()));
}

TEST_F(VCardDeletionTest, AcceptsALineEndOfAnyLength)
{
    const auto longEnd = card("b", "\r\n") + std::string(70'000, '\r') + "\n";

    EXPECT_EQ(without({"a"}, card("a") + longEnd), longEnd);
    auto longCard = card("b");
    longCard.insert(longCard.size() - 2, std::string(70'000, '\r'));
    EXPECT_EQ(without({"a"}, card("a") + longCard), longCard);
}

TEST_F(VCardDeletionTest, CutsANestedCardWithTheOneAroundIt)
{
    const std::string boss = "BEGIN:VCARD\r\nVERSION:2.1\r\nUID:boss\r\nAGENT:\r\n"
                             "BEGIN:VCARD\r\nVERSION:2.1\r\nUID:agent\r\nEND:VCARD\r\n"
                             "END:VCARD\r\n";

    EXPECT_EQ(without({"boss"}, card("a") + boss + card("b")), card("a") + card("b"));
}

TEST_F(VCardDeletionTest, LeavesAnEmptyFileWhenNothingElseWasInIt)
{
    EXPECT_EQ(without({"a", "b"}, card("a") + card("b")), "");
    EXPECT_TRUE(std::filesystem::exists(file()));
    EXPECT_TRUE(uidsIn(file()).empty());
}

TEST_F(VCardDeletionTest, KeepsOtherTextWhenNoCardIsLeft)
{
    EXPECT_EQ(without({"a"}, std::string(kMark) + "\r\n" + card("a") + " \r\n"),
              std::string(kMark) + "\r\n \r\n");
    EXPECT_EQ(without({"a"}, "notes\n" + card("a")), "notes\n");
}

TEST_F(VCardDeletionTest, CutsCardsOutOfUtf16WithAMark)
{
    const std::string little = "\xFF\xFE";
    const std::string big = "\xFE\xFF";

    EXPECT_EQ(without({"a"}, little + utf16Little(card("a") + card("b"))),
              little + utf16Little(card("b")));
    EXPECT_EQ(uidsIn(file()), (Uids{"b"}));
    EXPECT_EQ(without({"b"}, big + utf16Big(card("a") + "junk\n" + card("b"))),
              big + utf16Big(card("a") + "junk\n"));
    EXPECT_EQ(uidsIn(file()), (Uids{"a"}));
}

TEST_F(VCardDeletionTest, CutsCardsOutOfUtf16WithoutAMark)
{
    EXPECT_EQ(without({"a"}, utf16Little(card("a") + card("b") + "\n")),
              utf16Little(card("b") + "\n"));
    EXPECT_EQ(without({"b"}, utf16Big(card("a") + card("b") + card("c"))),
              utf16Big(card("a") + card("c")));
}

TEST_F(VCardDeletionTest, LeavesABookWithZeroBytesBetweenItsCardsReadable)
{
    const std::string zeros("\0\n\0\n", 4);

    EXPECT_EQ(without({"a"}, card("a") + zeros + card("b")), zeros + card("b"));
    EXPECT_EQ(uidsIn(file()), (Uids{"b"}));
}

TEST_F(VCardDeletionTest, CountsTheBytesOfEveryUtf16Character)
{
    using namespace std::string_literals;
    // é, €, a surrogate pair and an unpaired surrogate.
    const auto odd = "\xE9\x00\xAC\x20\x3D\xD8\x00\xDE\x3D\xD8"s + utf16Little("\r\n");
    const auto begin = utf16Little("BEGIN:VCARD\nUID:a\nFN:");
    const auto end = utf16Little("END:VCARD\n");
    const auto other = utf16Little(card("b"));

    EXPECT_EQ(without({"a"}, "\xFF\xFE"s + odd + begin + odd + end + odd + other),
              "\xFF\xFE"s + odd + odd + other);
    EXPECT_EQ(without({"b"}, "\xFF\xFE"s + odd + begin + odd + end + odd + other),
              "\xFF\xFE"s + odd + begin + odd + end + odd);
}

TEST_F(VCardDeletionTest, KeepsALastOddByteOfUtf16)
{
    EXPECT_EQ(without({"b"}, utf16Little(card("a") + card("b")) + "\r"),
              utf16Little(card("a")) + "\r");
}

TEST_F(VCardDeletionTest, RemovesOneOfTwoEqualCards)
{
    const std::string same = "BEGIN:VCARD\r\nFN:Ann\r\nEND:VCARD\r\n";
    write(file(), same + "first\r\n" + same + "second\r\n");
    VCardAddressBook book(file());
    const auto people = book.readPeople();
    ASSERT_EQ(people.size(), 2U);

    book.removeRecord(people[1]);
    book.save();

    EXPECT_EQ(contentOf(file()), same + "first\r\nsecond\r\n");
}

TEST_F(VCardDeletionTest, CanBeRepeatedWithoutReadingAgain)
{
    write(file(), card("a") + "1\n" + card("b") + "2\n" + card("c") + "3\n" + card("d"));
    VCardAddressBook book(file());
    ask(book, {"b", "d"});
    book.save();
    ASSERT_EQ(contentOf(file()), card("a") + "1\n2\n" + card("c") + "3\n");

    ask(book, {"a"});
    book.save();
    EXPECT_EQ(contentOf(file()), "1\n2\n" + card("c") + "3\n");

    ask(book, {"c"});
    book.save();
    EXPECT_EQ(contentOf(file()), "1\n2\n3\n");
    EXPECT_TRUE(book.people().empty());
}

TEST_F(VCardDeletionTest, WorksOnThePeopleOfTheListingAfterASave)
{
    write(file(), card("a") + card("b") + card("c"));
    VCardAddressBook book(file());
    const auto people = book.readPeople();
    book.removeRecord(people[0]);
    book.save();

    // The listing is still valid, because no new one was requested.
    book.removeRecord(people[0]);
    book.removeRecord(people[2]);
    book.save();

    EXPECT_EQ(contentOf(file()), card("b"));
}

/// A part of a random book: a person's card, or something else when the uid is empty.
struct Part {
    std::string uid;
    std::string text;
};

class RandomBook final {
public:
    explicit RandomBook(std::mt19937& random) : random_(random)
    {
        const auto count = 1 + random_() % 12;
        for (std::size_t i = 0; i < count; ++i) {
            parts_.push_back(random_() % 3 == 0 ? other() : person(i));
        }
        // Sometimes the last line has no line end.
        if (random_() % 3 == 0) {
            auto& last = parts_.back().text;
            last.erase(last.find_last_not_of("\r\n") + 1);
        }
    }

    Uids uids() const
    {
        Uids uids;
        for (const auto& part : parts_) {
            if (!part.uid.empty()) {
                uids.push_back(part.uid);
            }
        }
        return uids;
    }

    std::string without(const Uids& uids) const
    {
        std::string text;
        for (const auto& part : parts_) {
            if (std::find(uids.begin(), uids.end(), part.uid) == uids.end()) {
                text += part.text;
            }
        }
        return text;
    }

    Uids someUids()
    {
        Uids some;
        for (const auto& uid : uids()) {
            if (random_() % 2 == 0) {
                some.push_back(uid);
            }
        }
        return some;
    }

private:
    std::string oneOf(std::initializer_list<std::string_view> choices)
    {
        return std::string(choices.begin()[random_() % choices.size()]);
    }

    std::string lineEnd() { return oneOf({"\r\n", "\n", "\r", "\r\n"}); }

    Part person(std::size_t number)
    {
        const auto uid = "uid-" + std::to_string(number);
        const auto end = lineEnd();
        auto text = oneOf({"", " ", "\t"}) + oneOf({"BEGIN:VCARD", "begin:vcard", "Begin:VCard "});
        text += end + "VERSION:" + oneOf({"2.1", "3.0", "4.0"}) + end + "UID:" + uid + end;
        const auto lines = random_() % 4;
        for (std::size_t i = 0; i < lines; ++i) {
            text += oneOf({"N:Lee;Ann", "TEL;HOME:1", "NOTE:BEGIN is no line", "PHOTO;BASE64:AAAA",
                           "FN;ENCODING=QUOTED-PRINTABLE:=41=\r\n=42", "X-Y:\xE9\xA0",
                           "ORG:A\\;B\\nC", "item1.X-ABLabel:_$!<Home>!$_"}) +
                    lineEnd();
        }
        return {uid, text + oneOf({"END:VCARD", "end:vcard", "END:VCARD \t"}) + lineEnd()};
    }

    Part other()
    {
        const auto end = lineEnd();
        // Never starts with a line end: an LF after a card's CR would belong to the card.
        return {"", oneOf({"junk", "END:VCARD", "  ", "FN:Nobody", "\xFF\x80\x01"}) + end +
                        (random_() % 4 == 0 ? "BEGIN:VCARD" + end + "KIND:group" + end + "END:VCARD"
                                            : oneOf({"", "more", "TEL:1"})) +
                        end};
    }

    std::mt19937& random_;
    std::vector<Part> parts_;
};

TEST_F(VCardDeletionTest, KeepsTheRestOfARandomBookByteForByte)
{
    std::mt19937 random(20240501);
    for (int run = 0; run < 400; ++run) {
        RandomBook book(random);
        if (book.uids().empty()) {
            continue;
        }
        const auto content = book.without({});
        SCOPED_TRACE(content);
        write(file(), content);
        ASSERT_EQ(uidsIn(file()), book.uids());
        const auto removed = book.someUids();
        const auto remaining = book.without(removed);

        removeFrom(file(), removed);

        ASSERT_EQ(contentOf(file()), remaining);
        auto rest = book.uids();
        std::erase_if(rest, [&](const auto& uid) {
            return std::find(removed.begin(), removed.end(), uid) != removed.end();
        });
        // Where the file system keeps no attributes, nothing shows later that people were there.
        if (!rest.empty()) {
            ASSERT_EQ(uidsIn(file()), rest);
        }
    }
}

}  // namespace
}  // namespace dunmora::test
