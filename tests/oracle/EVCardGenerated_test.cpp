#include "adapters/vcard/VCardAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"
#include "tests/oracle/CardGenerator.h"
#include "tests/oracle/EVCardOracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>

namespace dunmora::test {

namespace {

struct AcceptedQuirk {
    Quirk quirk;
    std::string_view reason;
};

// Features that EVCard does not support; GeneratedFiles compares such cards with the generator
// instead.
constexpr std::array<AcceptedQuirk, 6> kAccepted{{
    {Quirk::AgentCard, "loses the text after the END of an inner card"},
    {Quirk::Base64Text, "does not split decoded base64 at `;`"},
    {Quirk::Fold21, "removes the blank of a 2.1 fold from the text"},
    {Quirk::Latin1, "applies CHARSET only to some encodings"},
    {Quirk::MidCharacterFold, "requires valid UTF-8 before it unfolds lines"},
    {Quirk::SoftBreak, "keeps a soft break before two hexadecimal digits"},
}};

bool hasAcceptedQuirk(const GeneratedCard& card)
{
    return std::any_of(kAccepted.begin(), kAccepted.end(),
                       [&](const auto& accepted) { return card.quirks.contains(accepted.quirk); });
}

}  // namespace

TEST(GeneratedCards, AreReadAsEVCardReadsThem)
{
    constexpr int kCards = 5000;
    const TemporaryFolder folder;
    const auto path = folder.path() / "card.vcf";
    CardGenerator generator(1);
    // Quirks that made a difference in a card without other quirks.
    std::set<Quirk> seen;

    for (int i = 0; i < kCards; ++i) {
        const auto card = generator.next();
        const auto theirs =
            card.kind == GeneratedCard::Kind::Person ? readWithEVCard(card.bytes) : std::nullopt;
        if (!theirs) {
            continue;
        }
        write(path, card.bytes);
        VCardAddressBook book(path);
        const auto found = differences(book.readPeople(), std::span(&*theirs, 1), LabelCase::Exact);
        if (!found.empty() && !hasAcceptedQuirk(card)) {
            ADD_FAILURE() << described(found.front()) << "\n" << card.bytes;
        }
        if (!found.empty() && card.quirks.size() == 1) {
            seen.insert(*card.quirks.begin());
        }
    }

    for (const auto& accepted : kAccepted) {
        EXPECT_TRUE(seen.contains(accepted.quirk)) << "EVCard no longer: " << accepted.reason;
    }
}

}  // namespace dunmora::test
