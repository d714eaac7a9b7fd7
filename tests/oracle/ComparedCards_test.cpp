#include "adapters/vcard/VCardAddressBook.h"
#include "engine/ContactsParser.h"
#include "review/UniqueProperties.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"
#include "tests/fakes/TemporaryFolder.h"
#include "tests/oracle/CardGenerator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {

namespace {

/// Reviews the people of a book in groups, in their order, of two to four, and compares what only
/// one copy holds after every card was read with what is found when the book compares the cards.
class ComparedReview final {
public:
    explicit ComparedReview(CardGenerator& choices) : choices_(choices) {}

    void review(VCardAddressBook& book)
    {
        std::vector<FakePerson> people;
        std::size_t group = 0;
        for (const auto& person : book.readPeople()) {
            people.push_back(named(std::string(person.uid), "Ann " + std::to_string(group)));
            group += choices_.chance(40) ? 1 : 0;
        }
        platform_.addressBook = FakeAddressBook(people);
        engine_.load();
        engine_.findDupes();
        read_.read(engine_, &book, UniqueProperties::Hashes::Kept);
        compared_.read(engine_, &book, UniqueProperties::Hashes::WhenAsked);
        requireTheSame();
        for (int edits = 0; edits < 3; ++edits) {
            edit();
            requireTheSame();
        }
        countCompared(book);
    }

    /// How many pairs of adjacent rows could be compared, and how many of these differ.
    std::size_t comparedPairs() const { return comparedPairs_; }
    std::size_t differentPairs() const { return differentPairs_; }

private:
    void edit()
    {
        std::vector<std::size_t> rows;
        for (std::size_t row = 0; row < engine_.duplicates().size(); ++row) {
            if (choices_.chance(30)) {
                engine_.contacts()
                    .find(engine_.duplicates()[row])
                    ->setObject(choices_.chance(70), kContactCheck);
                rows.push_back(row);
            }
        }
        read_.rowsEdited(engine_, rows);
        compared_.rowsEdited(engine_, rows);
    }

    void requireTheSame() const
    {
        ASSERT_EQ(compared_.count(), read_.count());
        for (std::size_t row = 0; row < engine_.duplicates().size(); ++row) {
            ASSERT_EQ(compared_.has(row), read_.has(row)) << engine_.duplicates()[row];
            ASSERT_EQ(compared_.text(row), read_.text(row));
            ASSERT_EQ(compared_.cardHash(row), read_.cardHash(row));
            const auto lines = read_.lines(row);
            const auto others = compared_.lines(row);
            ASSERT_EQ(others.has_value(), lines.has_value());
            for (std::size_t i = 0; lines && i < lines->size(); ++i) {
                ASSERT_EQ(others->at(i).verdict, lines->at(i).verdict);
            }
        }
    }

    void countCompared(const VCardAddressBook& book)
    {
        const auto& rows = engine_.duplicates();
        for (std::size_t row = 1; row < rows.size(); ++row) {
            const std::vector pair{rows[row - 1], rows[row]};
            CardDifferences differences;
            if (book.compareStored(pair, differences)) {
                std::erase(differences.names, "UID");
                ++comparedPairs_;
                differentPairs_ += differences.names.empty() ? 0 : 1;
            }
        }
    }

    CardGenerator& choices_;
    FakePlatform platform_;
    ContactsParser engine_;
    UniqueProperties read_;
    UniqueProperties compared_;
    std::size_t comparedPairs_ = 0;
    std::size_t differentPairs_ = 0;
};

using Lines = std::vector<std::string>;

/// A line as some program writes it, or a part of one.
std::string line(CardGenerator& choices)
{
    static const Lines kLines{"VERSION:2.1",
                              "N:Lee;Ann;;;",
                              "N:Lee;Ann;B.;;",
                              "N:Lee;Ann;;Dr.;",
                              "FN:Ann Lee",
                              "FN:Lee\\, Ann",
                              "FN:Dr. Ann Lee",
                              "fn:Ann  Lee",
                              "FN;ENCODING=QUOTED-PRINTABLE:Ann=20Lee",
                              "FN;ENCODING=QUOTED-PRINTABLE:Ann=",
                              "TEL:+49 30 1234567",
                              "TEL;TYPE=home:030 1234567",
                              "TEL;TYPE=home:030/1234567",
                              "TEL;TYPE=work:030 7654321",
                              "item1.TEL:0049301234567",
                              "item1.X-ABLabel:_$!<Home>!$_",
                              "item2.X-ABLabel:Party",
                              "item2.X-ABDATE:2020-01-01",
                              "item1.X-ABDATE:20200101",
                              "EMAIL:ann@example.org",
                              "email:ann@EXAMPLE.org",
                              "EMAIL;TYPE=work:Ann@example.org",
                              "NICKNAME:Annie,Ann",
                              "NICKNAME:Ann",
                              "CATEGORIES:a,b",
                              "ADR:;;1 Main St;Rome;;;",
                              "ADR;LABEL=1 Main St:;;;;;;",
                              "NOTE:a",
                              "NOTE:a\\nb",
                              "NOTE:a=",
                              " b",
                              " ",
                              "\tc",
                              "",
                              "NOTE: ",
                              "URL:http://example.org",
                              "URL:HTTP://Example.org",
                              "PHOTO;ENCODING=b:QUJD",
                              "PHOTO;BASE64:QUJE",
                              "PHOTO;ENCODING=b:",
                              "QUJD",
                              "PHOTO:data:image/png;base64,QUJD",
                              "X-SOCIALPROFILE;X-USER=ann:",
                              "X-Any;A=\"b:c\":d",
                              "X-Any;A=\"b:c",
                              "BDAY:1980-04-01",
                              "BDAY:19800401",
                              "PRODID:a",
                              "REV:2024-01-01T00:00:00Z",
                              "REV:2025-01-01T00:00:00Z",
                              "AGENT:",
                              "AGENT:a",
                              "NOTE;CHARSET=ISO-8859-1:\xE4",
                              "NOTE:\xE4",
                              "NOTE:\xC3\xA4"};
    return kLines[choices.below(static_cast<std::uint32_t>(kLines.size()))];
}

/// A card and copies of it, most of which have lost, gained or changed something.
std::string copies(CardGenerator& choices, std::size_t& uid)
{
    Lines original{choices.chance(80) ? "VERSION:3.0" : "VERSION:2.1",
                   choices.chance(80) ? "FN:Ann Lee" : "N:Lee;Ann;;;"};
    for (auto count = choices.below(8); count > 0; --count) {
        original.push_back(line(choices));
    }
    std::string text;
    for (auto copy = 2 + choices.below(2); copy > 0; --copy) {
        auto lines = original;
        lines.push_back("UID:" + std::to_string(++uid));
        for (auto change = choices.below(4); change > 0; --change) {
            auto& place = lines[choices.below(static_cast<std::uint32_t>(lines.size()))];
            if (choices.chance(30)) {
                std::swap(place, lines.back());
            } else if (choices.chance(50)) {
                place = line(choices);
            } else {
                lines.push_back(line(choices));
            }
        }
        text += "BEGIN:VCARD\r\n";
        for (const auto& written : lines) {
            text += written + (choices.chance(98) ? "\r\n" : "\n");
        }
        text += "END:VCARD\r\n";
    }
    return text;
}

}  // namespace

TEST(ComparedCards, HoldTheSameOnlyHereAsThoseThatAreRead)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "book.vcf";
    CardGenerator choices(14);
    std::size_t compared = 0;
    std::size_t different = 0;
    for (int i = 0; i < 30; ++i) {
        std::string text;
        std::size_t uid = 0;
        while (uid < 60) {
            text += copies(choices, uid);
        }
        write(file, text);
        VCardAddressBook book(file);
        ComparedReview review(choices);
        review.review(book);
        ASSERT_FALSE(HasFatalFailure());
        compared += review.comparedPairs();
        different += review.differentPairs();
    }
    EXPECT_GT(compared, 150U);
    EXPECT_GT(different, 100U);
}

TEST(ComparedCards, OfOtherProgramsHoldTheSameOnlyHereAsThoseThatAreRead)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "book.vcf";
    CardGenerator generator(41);
    std::size_t compared = 0;
    for (int i = 0; i < 20; ++i) {
        std::string text;
        for (int person = 0; person < 20; ++person) {
            const auto bytes = generator.next().bytes;
            text += bytes;
            text += generator.chance(60) ? bytes : "";
        }
        write(file, text);
        VCardAddressBook book(file);
        ComparedReview review(generator);
        review.review(book);
        ASSERT_FALSE(HasFatalFailure());
        compared += review.comparedPairs();
    }
    EXPECT_GT(compared, 10U);
}

}  // namespace dunmora::test
