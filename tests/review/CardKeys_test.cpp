#include "review/CardKeys.h"

#include "tests/review/Cards.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dunmora::test {
namespace {

/// Whether the kept card has every property of the other.
bool hasAll(const PersonCard& kept, const PersonCard& other)
{
    const CardKeys keptKeys(kept);
    const CardKeys keys(other);
    const auto provided = keptKeys.provided();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const auto needed = keys.neededBy(i);
        if (!std::any_of(needed.begin(), needed.end(), [&](CardKeys::Key key) {
                return std::find(provided.begin(), provided.end(), key) != provided.end();
            })) {
            return false;
        }
    }
    return true;
}

/// Whether each of two properties replaces the other.
bool areSame(const CardProperty& a, const CardProperty& b)
{
    EXPECT_EQ(hasAll(card({a}), card({b})), hasAll(card({b}), card({a})));
    return hasAll(card({a}), card({b}));
}

bool areSame(const std::string& name, const std::string& a, const std::string& b)
{
    return areSame(text(name, a), text(name, b));
}

std::size_t compared(const PersonCard& card)
{
    return CardKeys(card).size();
}

TEST(CardKeys, IgnoreTheCaseOfAnEmailsHostOnly)
{
    EXPECT_TRUE(areSame("EMAIL", "ann@example.org", "ann@EXAMPLE.org"));
    EXPECT_TRUE(areSame("EMAIL", "mailto:ann@example.org", "ann@example.org"));
    EXPECT_FALSE(areSame("EMAIL", "Ann@example.org", "ann@example.org"));
    EXPECT_FALSE(areSame("EMAIL", "ann", "Ann"));
}

TEST(CardKeys, IgnoreTheCaseOfSchemesAndHosts)
{
    EXPECT_TRUE(areSame("URL", "HTTP://Example.org/a", "http://example.ORG/a"));
    EXPECT_FALSE(areSame("URL", "http://example.org/A", "http://example.org/a"));
    EXPECT_FALSE(areSame("URL", "http://example.org/?Q", "http://example.org/?q"));
    EXPECT_TRUE(areSame("URL", "http://Ann@Example.org:80", "http://Ann@example.org:80"));
    EXPECT_FALSE(areSame("URL", "http://Ann@example.org", "http://ann@example.org"));
    EXPECT_FALSE(areSame("URL", "Example.org/a", "example.org/a"));
    EXPECT_TRUE(areSame("IMPP", "XMPP:ann@Example.org", "xmpp:ann@example.org"));
    EXPECT_FALSE(areSame("IMPP", "xmpp:Ann@example.org", "xmpp:ann@example.org"));
    EXPECT_TRUE(areSame("IMPP", "SKYPE:ann", "skype:ann"));
    EXPECT_FALSE(areSame("IMPP", "skype:Ann", "skype:ann"));
    EXPECT_FALSE(areSame("NICKNAME", "HTTP://A", "http://a"));
}

TEST(CardKeys, FoldTheWhiteSpaceOfAddressesAndNotes)
{
    EXPECT_TRUE(areSame("NOTE", "Met in  Rome\r\nin May ", "Met in Rome in\u00A0May"));
    EXPECT_FALSE(areSame("NOTE", "Met in Rome", "met in Rome"));
    EXPECT_TRUE(areSame(structured("ADR", {"", "", "1 Main\nSt", "Rome "}),
                        structured("ADR", {"", " ", "1  Main St", "Rome", "", "", ""})));
    EXPECT_FALSE(areSame(structured("ADR", {"", "", "1 Main St", "Rome"}),
                         structured("ADR", {"", "", "1 Main St Rome"})));
    EXPECT_FALSE(areSame("TITLE", "CEO", "C EO"));
}

TEST(CardKeys, IgnoreEmptyComponentsAtTheEndOnly)
{
    EXPECT_TRUE(areSame(structured("ORG", {"Acme"}), structured("ORG", {"Acme", ""})));
    EXPECT_FALSE(areSame(structured("ORG", {"Acme"}), structured("ORG", {"Acme", "Sales"})));
    EXPECT_FALSE(areSame(structured("ORG", {"Acme"}), structured("ORG", {"", "Acme"})));
}

TEST(CardKeys, FindNumbersByTheirDigits)
{
    EXPECT_TRUE(areSame("TEL", "+49 30 1234567", "030/1234567"));
    EXPECT_TRUE(areSame("TEL", "tel:+49-30-1234567", "0049 30 1234567"));
    EXPECT_FALSE(areSame("TEL", "+49 30 1234567", "+1 30 1234567"));
    EXPECT_FALSE(areSame(text("TEL", "5550100"), text("X-TEL", "5550100")));
}

TEST(CardKeys, IgnoreLabelsUnlessTheyAreTheMeaning)
{
    EXPECT_TRUE(areSame(text("TEL", "5550100", "HOME"), text("TEL", "5550100", "WORK")));
    EXPECT_TRUE(areSame(text("EMAIL", "a@b.org", "HOME"), text("EMAIL", "a@b.org")));
    for (const std::string name : {"X-ABDATE", "X-ABRELATEDNAMES", "RELATED", "X-SOCIALPROFILE"}) {
        EXPECT_FALSE(areSame(text(name, "Ben", "_$!<Child>!$_"), text(name, "Ben", "Partner")));
        EXPECT_TRUE(areSame(text(name, "Ben", "PARTNER"), text(name, "Ben", "Partner")));
    }
}

TEST(CardKeys, CompareDatesHoweverTheyAreWritten)
{
    EXPECT_TRUE(areSame("BDAY", "1980-04-01", "19800401"));
    EXPECT_FALSE(areSame("BDAY", "1980-04-01", "1980-04-02"));
    EXPECT_FALSE(areSame("BDAY", "1980-04-01", "--0401"));
    EXPECT_FALSE(areSame("NOTE", "1980-04-01", "19800401"));
}

TEST(CardKeys, CompareBinaryValuesByTheirBytes)
{
    EXPECT_TRUE(areSame(binary("PHOTO", "abc"), binary("PHOTO", "abc", "")));
    EXPECT_FALSE(areSame(binary("PHOTO", "abc"), binary("PHOTO", "abd")));
    EXPECT_FALSE(areSame(binary("PHOTO", "abc"), binary("LOGO", "abc")));
    EXPECT_FALSE(areSame(binary("PHOTO", "abc"), text("PHOTO", "abc")));
}

TEST(CardKeys, IgnoreBookkeepingAndEmptyValues)
{
    EXPECT_EQ(compared(card(
                  {text("UID", "1"), text("REV", "2"), text("PRODID", "3"), text("VERSION", "4.0"),
                   text("KIND", "individual"), text("X-ABSHOWAS", "COMPANY"), text("X-ABUID", "5"),
                   text("X-EVOLUTION-FILE-AS", "Lee, Ann"), text("X-MOZILLA-HTML", "FALSE"),
                   text("X-MS-SIGNATURE", "YES"), text("X-MS-OL-DEFAULT-POSTAL-ADDRESS", "1")})),
              0U);
    EXPECT_EQ(compared(card({text("NOTE", ""), text("NOTE", " \u00A0\n"), binary("PHOTO", ""),
                             structured("ADR", {"", " ", "", ""}), structured("N", {})})),
              0U);
    EXPECT_EQ(compared(card({text("NOTE", "x"), text("X-UNKNOWN", "1")})), 2U);
}

TEST(CardKeys, TakeAFormattedNameForTheNameThatItIsMadeOf)
{
    const auto kept = card({structured("N", {"Lee", "Ann", "Marie", "Dr.", "Jr."})});

    for (const auto* const name :
         {"Ann Lee", "Lee Ann", "Lee, Ann", "Ann Marie Lee", "Dr. Ann Lee", "Dr.  Ann Marie Lee",
          "Dr. Ann Marie Lee Jr.", "Ann Lee, Jr.", "Lee, Ann Marie", "LeeAnn"}) {
        EXPECT_TRUE(hasAll(kept, card({text("FN", name)}))) << name;
    }
    for (const auto* const name : {"Ann", "Annie Lee", "Ann Lee Acme", "ann lee", "Jr."}) {
        EXPECT_FALSE(hasAll(kept, card({text("FN", name)}))) << name;
    }
    // The name says which part is the family name.
    EXPECT_FALSE(hasAll(card({text("FN", "Ann Lee")}), card({structured("N", {"Lee", "Ann"})})));
    EXPECT_FALSE(hasAll(kept, card({text("NICKNAME", "Ann Lee")})));
}

TEST(CardKeys, TakeAFormattedNameWithTheSuffixAfterAComma)
{
    const auto kept = card({structured("N", {"Lee", "Ann", "Marie", "Dr.", "Jr."})});

    for (const auto* const name :
         {"Ann Lee, Jr.", "Ann Marie Lee, Jr.", "Dr. Ann Marie Lee, Jr.", "Dr. Ann Lee Jr."}) {
        EXPECT_TRUE(hasAll(kept, card({text("FN", name)}))) << name;
    }
    EXPECT_FALSE(hasAll(kept, card({text("FN", "Dr. Ann Lee, Jr.")})));
    EXPECT_TRUE(hasAll(card({structured("N", {"Lee", "Ann", "", "Dr.", "Jr."})}),
                       card({text("FN", "Dr. Ann Lee, Jr.")})));
}

TEST(CardKeys, TakeAFormattedNameForANameOfFewParts)
{
    const auto isIn = [](const std::string& name, const std::vector<std::string>& components) {
        return hasAll(card({structured("N", components)}), card({text("FN", name)}));
    };

    EXPECT_TRUE(isIn("Lee", {"Lee", "Ann"}));
    EXPECT_TRUE(isIn("Lee, Ann", {"Lee", " Ann "}));
    EXPECT_TRUE(isIn("vanLee", {"van", "Lee"}));
    EXPECT_TRUE(isIn("van Lee", {"van ", " Lee"}));
    EXPECT_FALSE(isIn("Lee,", {"Lee", ""}));
    EXPECT_FALSE(isIn("Ann Lee,", {"Lee", "Ann", "", "", " "}));
    EXPECT_TRUE(isIn("Dr.", {"", "", "", "Dr."}));
}

TEST(CardKeys, FindAShorterNameInALongerOne)
{
    const auto kept = card({structured("N", {"Lee", "Ann", "Marie", "Dr.", "Jr."})});
    const auto hasName = [&](const std::vector<std::string>& components) {
        return hasAll(kept, card({structured("N", components)}));
    };

    EXPECT_TRUE(hasName({"Lee", "Ann"}));
    EXPECT_TRUE(hasName({"Lee", "Ann", "Marie"}));
    EXPECT_TRUE(hasName({"Lee", "Ann", "", "Dr.", "Jr."}));
    EXPECT_FALSE(hasName({"Lee"}));
    EXPECT_FALSE(hasName({"Lee", "Ann", "Maria"}));
    EXPECT_FALSE(hasName({"Lee", "Ann", "Dr."}));
    EXPECT_FALSE(hasAll(card({structured("N", {"Lee", "Ann"})}), kept));
}

TEST(CardKeys, AreFewForALongName)
{
    const std::string megabyte(1'000'000, 'x');

    EXPECT_EQ(CardKeys(card({structured("N", {megabyte, megabyte})})).provided().size(), 1U);
}

TEST(CardKeys, CompareMembershipOfLists)
{
    EXPECT_TRUE(hasAll(card({}, {"Choir", "Band"}), card({}, {"Choir"})));
    EXPECT_FALSE(hasAll(card({}, {"Band"}), card({}, {"Choir"})));
    EXPECT_FALSE(hasAll(card({text("CATEGORIES", "Choir")}), card({}, {"Choir"})));
}

TEST(CardKeys, NameThePlacesOfTheComparedProperties)
{
    const CardKeys keys(
        card({text("UID", "1"), text("NOTE", "x"), text("URL", ""), text("TEL", "1")}, {"Choir"}));

    ASSERT_EQ(keys.size(), 3U);
    EXPECT_EQ(keys.placeOf(0), 1U);
    EXPECT_EQ(keys.placeOf(1), 3U);
    EXPECT_EQ(keys.placeOf(2), 4U);
}

TEST(CardKeys, NeverRunOneTextIntoTheNext)
{
    EXPECT_FALSE(areSame(structured("ORG", {"a", "b"}), structured("ORG", {"ab"})));
    EXPECT_FALSE(areSame(text("X-A", "bc"), text("X-AB", "c")));
    EXPECT_FALSE(areSame(text("X-ABDATE", "bc", "a"), text("X-ABDATE", "c", "ab")));
}

TEST(CardHash, IsEqualForEqualCardsOnly)
{
    const auto one = card({text("UID", "1"), text("NOTE", "x", "a"), binary("PHOTO", "p")}, {"l"});
    const auto differs = [&](const PersonCard& other) { return hashOf(other) != hashOf(one); };

    EXPECT_FALSE(differs(one));
    auto other = one;
    other.properties[0].components[0] = "2";
    EXPECT_TRUE(differs(other));
    other = one;
    other.properties[1].label = "b";
    EXPECT_TRUE(differs(other));
    other = one;
    other.properties[1].name = "NOTF";
    EXPECT_TRUE(differs(other));
    other = one;
    other.properties[2].binary->bytes = "q";
    EXPECT_TRUE(differs(other));
    other = one;
    other.properties[2].binary->mediaType = "";
    EXPECT_TRUE(differs(other));
    other = one;
    other.lists[0] = "m";
    EXPECT_TRUE(differs(other));
    other = one;
    std::swap(other.properties[0], other.properties[1]);
    EXPECT_TRUE(differs(other));
    other = one;
    other.properties[1].components.emplace_back();
    EXPECT_TRUE(differs(other));
}

TEST(CardHash, DependsOnAllOfALargeCard)
{
    constexpr std::size_t kProperties = 10'000;
    constexpr std::size_t kLargeText = 100'000;
    PersonCard one;
    for (std::size_t i = 0; i < kProperties; ++i) {
        one.properties.push_back(text("TEL", "+1 555 " + std::to_string(i)));
    }
    one.properties.push_back(text("NOTE", std::string(kLargeText, 'x')));
    const auto differsWithout = [&](std::size_t property, std::size_t character) {
        auto other = one;
        other.properties[property].components[0][character] = '#';
        return hashOf(other) != hashOf(one);
    };

    EXPECT_EQ(hashOf(one), hashOf(PersonCard(one)));
    EXPECT_TRUE(differsWithout(0, 0));
    EXPECT_TRUE(differsWithout(kProperties / 2, 0));
    EXPECT_TRUE(differsWithout(kProperties - 1, 0));
    EXPECT_TRUE(differsWithout(kProperties, 0));
    EXPECT_TRUE(differsWithout(kProperties, kLargeText - 1));
    auto other = one;
    std::swap(other.properties[0], other.properties[1]);
    EXPECT_NE(hashOf(other), hashOf(one));
}

TEST(CardKeys, AreNeededOfComparedNamesOnly)
{
    const auto compared = [](std::vector<std::string> names) {
        restrictToCompared(names);
        return names;
    };
    using Names = std::vector<std::string>;

    EXPECT_EQ(compared({"UID", "TEL", "REV", "NOTE"}), (Names{"TEL", "NOTE"}));
    EXPECT_EQ(compared({"UID"}), Names{});
    EXPECT_EQ(compared({"FN"}), (Names{"FN", "N"}));
    EXPECT_EQ(compared({"N", "FN"}), (Names{"N", "FN"}));
    EXPECT_EQ(compared({"N"}), Names{"N"});
}

TEST(CardKeys, MayHaveOneForAllThatIsShared)
{
    const std::vector<CardProperty> others{text("REV", "2024-01-01"), text("NOTE", "a")};
    CardKeys one;
    CardKeys other(card({text("NOTE", "left from before")}));

    one.readBesidesShared(others, {}, {});
    other.readBesidesShared({}, {}, {});

    ASSERT_EQ(one.size(), 2U);
    EXPECT_TRUE(std::ranges::equal(one.neededBy(0), other.neededBy(0)));
    EXPECT_TRUE(std::ranges::equal(one.neededBy(1), CardKeys(card({others[1]})).needed()));
    EXPECT_EQ(one.placeOf(1), 1U);
    ASSERT_EQ(other.size(), 1U);
    EXPECT_TRUE(std::ranges::equal(other.provided(), other.needed()));
}

TEST(CardKeys, NeedNoKeysOfWhatIsShared)
{
    const auto shared = card({text("TEL", "030 1234567")});
    const std::vector<CardProperty> properties{text("NOTE", "a"), text("NOTE", " "),
                                               shared.properties.front(),
                                               text("TEL", "+49 30 1234567")};
    CardKeys keys;

    keys.readBesidesShared(properties, shared, CardKeys(shared));

    ASSERT_EQ(keys.size(), 4U);
    const auto sharedKey = keys.neededBy(0).front();
    const auto needsShared = [&](std::size_t property) {
        const auto needed = keys.neededBy(property);
        return std::find(needed.begin(), needed.end(), sharedKey) != needed.end();
    };
    EXPECT_EQ(keys.provided().front(), sharedKey);
    EXPECT_FALSE(needsShared(1));
    EXPECT_TRUE(needsShared(2));
    EXPECT_EQ(keys.neededBy(2).size(), 1U);
    // The shared number is the same one.
    EXPECT_TRUE(needsShared(3));
    EXPECT_EQ(keys.placeOf(3), 3U);
    const auto provided = keys.provided();
    const CardKeys unshared(card({properties[0], properties[3]}));
    EXPECT_TRUE(std::ranges::equal(provided.subspan(1), unshared.provided()));
}

}  // namespace
}  // namespace dunmora::test
