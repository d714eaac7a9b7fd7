#include "adapters/vcard/ReadBackInParts.h"

#include "adapters/posix/FileReplacement.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/vcard/AddedCards.h"
#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardReader.h"
#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

/// A file from which cards have been deleted, and the new file that has been prepared for it.
class ReadBackInPartsTest : public BookTest {
protected:
    /// Prepares the file without the cards with these numbers.
    void prepare(std::string content, const std::vector<std::size_t>& deleted)
    {
        content_ = std::move(content);
        write(file(), content_);
        // Ends the lock of the one before.
        replacement_.reset();
        original_.emplace(cardFileOf(file(), content_));
        cards_ = {};
        reader_.emplace();
        original_->read(*reader_, cards_);
        expected_.clear();
        CardFile::Ranges removed;
        CardBytesFinder finder(*original_);
        auto next = deleted.begin();
        for (std::size_t i = 0; i < cards_.people.size(); ++i) {
            const auto [range, lineEndSize] = finder.bytesOf(cards_.ranges[i]);
            if (next != deleted.end() && *next == i) {
                ++next;
                removed.push_back(range);
            } else {
                const auto size = range.end - range.begin - lineEndSize;
                expected_.push_back(
                    {original_->bytes().substr(range.begin, size), &cards_.people[i]});
            }
        }
        written_ = original_->without(removed);
        replacement_ = std::make_unique<FileReplacement>(LockedFile::open({file()}), written_);
    }

    bool isReadBack(std::size_t partSize, std::size_t threads = 2)
    {
        return isReadBackInParts(replacement_->newFile(), written_, expected_, {partSize, threads});
    }

    /// Whether the new file, read from its beginning to its end, holds what is expected.
    bool isReadAsExpected()
    {
        const CardFile whole(file(), replacement_->newFile().content());
        CardReader reader;
        CardReader::Cards cards;
        whole.read(reader, cards);
        bool isSame = cards.people.size() == expected_.size();
        CardBytesFinder finder(whole);
        for (std::size_t i = 0; isSame && i < expected_.size(); ++i) {
            const auto [range, lineEndSize] = finder.bytesOf(cards.ranges[i]);
            const auto size = range.end - range.begin - lineEndSize;
            isSame =
                expected_[i].isReadAs(whole.bytes().substr(range.begin, size), cards.people[i]);
        }
        return isSame;
    }

    Pieces written_;
    std::vector<RemainingCard> expected_;

private:
    std::string content_;
    std::optional<CardFile> original_;
    std::optional<CardReader> reader_;
    CardReader::Cards cards_;
    std::unique_ptr<FileReplacement> replacement_;
};

constexpr std::size_t kPartSizes[] = {1, 60, 200, 100'000};  // NOLINT(*-c-arrays)

std::string cardWith(std::string_view lines)
{
    return "BEGIN:VCARD\r\nVERSION:2.1\r\n" + std::string(lines) + "END:VCARD\r\n";
}

TEST_F(ReadBackInPartsTest, ReadsOrdinaryCardsInPartsOfEverySize)
{
    const auto content = "\xEF\xBB\xBFtext\r\n" + card("a") + card("b", "\n") + card("c") +
                         "; between\r\n\r\n" + card("d") + card("e", "\r") + card("f") + "the end";
    for (const std::vector<std::size_t>& deleted :
         {std::vector<std::size_t>{}, {0}, {1, 3}, {2, 5}, {0, 1, 2, 3, 4, 5}}) {
        prepare(content, deleted);
        for (const auto partSize : kPartSizes) {
            for (const std::size_t threads : {1, 3}) {
                EXPECT_TRUE(isReadBack(partSize, threads)) << partSize;
            }
        }
    }
}

TEST_F(ReadBackInPartsTest, FindsACardThatIsReadAsSomebodyElse)
{
    prepare(cardWith("N:Lee;Ann\r\nTEL;HOME:1\r\nTEL;WORK:2\r\n") + card("b") + card("c"), {1});
    const auto person = *expected_[0].person;
    PhoneList fewer(person.phones->begin(), person.phones->begin() + 1);
    auto other = person;
    expected_[0].person = &other;
    ASSERT_TRUE(isReadBack(1));

    for (const auto& change : std::vector<std::function<void()>>{
             [&] { other.firstName = "Ben"; },
             [&] { other.lastName = std::nullopt; },
             [&] { other.nickname = "A"; },
             [&] { other.modified = std::chrono::sys_seconds(); },
             [&] { other.phones = std::nullopt; },
             [&] { other.phones = fewer; },
         }) {
        other = person;
        change();
        EXPECT_FALSE(isReadBack(1));
        EXPECT_FALSE(isReadBack(100'000));
    }
}

TEST_F(ReadBackInPartsTest, FindsThatCardsAreMissingOrTooMany)
{
    for (const auto partSize : kPartSizes) {
        prepare(card("a") + card("b") + card("c"), {1});
        const auto all = expected_;

        expected_.pop_back();
        EXPECT_FALSE(isReadBack(partSize));
        expected_ = {all[1]};
        EXPECT_FALSE(isReadBack(partSize));
        expected_ = {all[0], all[1], all[1]};
        EXPECT_FALSE(isReadBack(partSize));
        expected_ = {all[1], all[0]};
        EXPECT_FALSE(isReadBack(partSize));
    }
}

TEST_F(ReadBackInPartsTest, FindsEveryByteThatIsNotAsWritten)
{
    const auto content = card("a") + "x\r\n" + card("b") + "y\r\n" + card("c") + "z\r\n";
    prepare(content, {1});
    const auto written = written_;
    for (const auto partSize : kPartSizes) {
        // The same cards, but not the text between them.
        for (std::size_t i = 0; i < written.size(); ++i) {
            const auto piece = written[i];
            for (const auto position : {piece.find("x\r"), piece.find("y\r"), piece.find("z\r")}) {
                if (position != std::string_view::npos) {
                    written_ = written;
                    written_[i] = piece.substr(0, position);
                    written_.insert(written_.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                                    {"-", piece.substr(position + 1)});
                    EXPECT_FALSE(isReadBack(partSize)) << i;
                }
            }
        }
        written_ = written;
        written_.emplace_back("more");
        EXPECT_FALSE(isReadBack(partSize));
        written_ = written;
        written_.back().remove_suffix(1);
        EXPECT_FALSE(isReadBack(partSize));
    }
}

TEST_F(ReadBackInPartsTest, LeavesUtf16ToTheWholeFile)
{
    prepare("\xFF\xFE" + utf16Little(card("a") + card("b")), {0});

    EXPECT_TRUE(isReadAsExpected());
    EXPECT_FALSE(isReadBack(1));
}

TEST_F(ReadBackInPartsTest, LeavesCardsThatAreElsewhereToTheWholeFile)
{
    prepare(card("a") + card("b"), {});
    const auto copy = std::string(expected_[1].bytes);
    expected_[1].bytes = copy;

    EXPECT_FALSE(isReadBack(1));
}

/// Whatever is in the file, a part never hides that the whole would be read differently.
TEST_F(ReadBackInPartsTest, NeverApprovesWhatWouldBeReadDifferently)
{
    const std::vector<std::string> texts = {
        card("a"),
        card("b", "\n"),
        card("c", "\r"),
        "BEGIN:VCARD\r\nbreaks off:1\r\n",
        "BEGIN:VCARD\r\nAGENT:\r\n",
        "BEGIN:VCARD\nN:a\nNOTE;ENCODING=QUOTED-PRINTABLE:soft=\n",
        "BEGIN:VCARD\nN:b\nPHOTO;ENCODING=BASE64:abcd\n",
        cardWith("N:Group\r\nX-ADDRESSBOOKSERVER-KIND:group\r\n"),
        cardWith("AGENT:BEGIN:VCARD\\n\r\n"),
        "END:VCARD\r\n",
        "text\n",
        " ",
        "\xEF\xBB\xBF",
        std::string(1, '\0'),
    };
    std::mt19937 random(5);
    std::size_t approved = 0;
    std::size_t different = 0;
    for (int run = 0; run < 300; ++run) {
        std::string content = card("first");
        for (int i = 0; i < 12; ++i) {
            content += texts[random() % (i % 2 == 0 ? 3 : texts.size())];
        }
        std::vector<std::size_t> deleted;
        for (std::size_t i = 0; i < 12; ++i) {
            if (random() % 3 == 0) {
                deleted.push_back(i);
            }
        }
        prepare(content, deleted);
        const bool isExpected = isReadAsExpected();
        different += isExpected ? 0 : 1;
        for (const auto partSize : kPartSizes) {
            const bool isApproved = isReadBack(partSize);
            approved += isApproved ? 1 : 0;
            EXPECT_LE(isApproved, isExpected) << content;
        }
        EXPECT_EQ(isReadBack(100'000), isExpected) << content;
    }
    EXPECT_GT(approved, 300U);
    EXPECT_GT(different, 0U);
}

}  // namespace
}  // namespace dunmora::test
