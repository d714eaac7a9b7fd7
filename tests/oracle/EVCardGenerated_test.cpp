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

// What EVCard does not follow; what such cards say is known from their author.
constexpr std::array<AcceptedQuirk, 6> kAccepted{{
    {Quirk::AgentCard, "loses what follows the END of an inner card"},
    {Quirk::Base64Text, "does not look for `;` inside base64"},
    {Quirk::Fold21, "takes the blank that a 2.1 fold leaves in the text"},
    {Quirk::Latin1, "looks at CHARSET only in some encodings"},
    {Quirk::MidCharacterFold, "asks for valid UTF-8 before it puts lines together"},
    {Quirk::SoftBreak, "keeps a soft break before what could be a byte in hexadecimal"},
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
    // Quirks that were all that a card had, and that made a difference.
    std::set<Quirk> met;

    for (int i = 0; i < kCards; ++i) {
        const auto card = generator.next();
        const auto theirs =
            card.kind == GeneratedCard::Kind::Person ? readWithEVCard(card.bytes) : std::nullopt;
        if (!theirs) {
            continue;
        }
        write(path, card.bytes);
        VCardAddressBook book(path);
        const auto found =
            differences(book.readPeople(), std::span(&*theirs, 1), LabelCase::Counts);
        if (!found.empty() && !hasAcceptedQuirk(card)) {
            ADD_FAILURE() << described(found.front()) << "\n" << card.bytes;
        }
        if (!found.empty() && card.quirks.size() == 1) {
            met.insert(*card.quirks.begin());
        }
    }

    for (const auto& accepted : kAccepted) {
        EXPECT_TRUE(met.contains(accepted.quirk)) << "EVCard no longer: " << accepted.reason;
    }
}

}  // namespace dunmora::test
