#include "adapters/vcard/VCardAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"
#include "tests/oracle/CardGenerator.h"

#include <gtest/gtest.h>

#include <set>

namespace dunmora::test {

namespace {

/// Converts UTF-8 to UTF-16, low byte first or high byte first.
std::string inUtf16(const std::string& text, bool lowByteFirst)
{
    std::string bytes;
    const auto add = [&](std::uint32_t unit) {
        const auto low = static_cast<char>(unit & 0xFFU);
        const auto high = static_cast<char>(unit >> 8U);
        bytes += lowByteFirst ? low : high;
        bytes += lowByteFirst ? high : low;
    };
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        std::uint32_t code = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (std::size_t j = 1; j < length; ++j) {
            code = code << 6U | (static_cast<unsigned char>(text[i + j]) & 0x3FU);
        }
        if (code < 0x10000) {
            add(code);
        } else {
            add(0xD800 + ((code - 0x10000) >> 10U));
            add(0xDC00 + ((code - 0x10000) & 0x3FFU));
        }
        i += length;
    }
    return bytes;
}

/// Whether the text begins with BEGIN, like no junk that the generator writes.
bool beginsWithBegin(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && (text[first] == 'B' || text[first] == 'b');
}

struct GeneratedFile {
    std::string bytes;
    std::vector<GeneratedCard> people;
    std::size_t skipped = 0;
};

GeneratedFile generatedFile(CardGenerator& generator)
{
    GeneratedFile file;
    bool canBeUtf16 = true;
    for (auto count = generator.below(12); count > 0; --count) {
        file.bytes += generator.junk();
        auto card = generator.next();
        file.bytes += card.bytes;
        // Latin 1 is not UTF-8, and a fold inside a character makes it invalid.
        canBeUtf16 = canBeUtf16 && !card.quirks.contains(Quirk::Latin1) &&
                     !card.quirks.contains(Quirk::MidCharacterFold);
        if (card.kind == GeneratedCard::Kind::Person) {
            file.people.push_back(std::move(card));
        } else if (card.kind != GeneratedCard::Kind::Group) {
            ++file.skipped;
        }
    }
    const auto encoding = generator.below(20);
    if (encoding == 0) {
        file.bytes.insert(0, "\xEF\xBB\xBF");
    } else if (encoding <= 4 && canBeUtf16) {
        const auto lowByteFirst = encoding <= 2;
        const auto withMark = encoding % 2 == 1 || !beginsWithBegin(file.bytes);
        file.bytes = inUtf16((withMark ? "\xEF\xBB\xBF" : "") + file.bytes, lowByteFirst);
    }
    return file;
}

}  // namespace

TEST(GeneratedFiles, AreReadAsTheGeneratorMeantThem)
{
    const TemporaryFolder folder;
    const auto path = folder.path() / "book.vcf";

    for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
        CardGenerator generator(seed);
        const auto file = generatedFile(generator);
        write(path, file.bytes);

        VCardAddressBook book(path);
        const auto people = book.readPeople();

        SCOPED_TRACE("seed " + std::to_string(seed) + ":\n" + file.bytes);
        EXPECT_EQ(book.notes().cardsSkipped, file.skipped);
        ASSERT_EQ(people.size(), file.people.size());
        std::set<std::string_view> uids;
        for (std::size_t i = 0; i < people.size(); ++i) {
            for (const auto& difference :
                 differences(people[i], file.people[i].expected, i, LabelCase::Exact)) {
                ADD_FAILURE() << described(difference) << "\n" << file.people[i].bytes;
            }
            EXPECT_EQ(people[i].modified, file.people[i].modified) << file.people[i].bytes;
            EXPECT_FALSE(people[i].uid.empty());
            EXPECT_TRUE(uids.insert(people[i].uid).second) << people[i].uid;
        }
        ASSERT_FALSE(HasFailure());
    }
}

}  // namespace dunmora::test
