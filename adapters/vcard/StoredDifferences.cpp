#include "adapters/vcard/StoredDifferences.h"

#include "adapters/vcard/Property.h"
#include "adapters/vcard/StoredParts.h"
#include "adapters/vcard/StoredProperties.h"
#include "text/Ascii.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace dunmora {

namespace {

using Properties = std::vector<StoredProperty>;

/// Cards with more are read instead: each property may be compared with all of the other card.
constexpr std::size_t kMostProperties = 128;

/// Cards that differ in more names are read instead: each property is compared with all of these.
constexpr std::size_t kMostNames = 16;

/// Whether how other properties are read may depend on this one.
bool affectsOthers(const StoredProperty& property)
{
    const auto kind = propertyKind(property.name);
    return kind == PropertyKind::Version || kind == PropertyKind::Label;
}

/// Whether the cards have the same properties that affect others, in the same order.
bool readOthersAlike(const Properties& one, const Properties& other)
{
    auto a = one.begin();
    auto b = other.begin();
    while (true) {
        a = std::find_if(a, one.end(), affectsOthers);
        b = std::find_if(b, other.end(), affectsOthers);
        if (a == one.end() || b == other.end()) {
            return a == one.end() && b == other.end();
        }
        if (a->text != b->text) {
            return false;
        }
        ++a;
        ++b;
    }
}

void addName(std::string_view name, std::vector<std::string>& names)
{
    const bool isKnown = std::any_of(names.begin(), names.end(), [&](const std::string& known) {
        return equalsIgnoringCase(known, name);
    });
    if (!isKnown) {
        auto& added = names.emplace_back(name);
        std::transform(added.begin(), added.end(), added.begin(), toUpperAscii);
    }
}

/// Adds the names of the properties of one card that the other one does not have.
void addMissing(const Properties& properties, const Properties& searched,
                std::vector<std::string>& names)
{
    // Most cards have what they have in common in the same order.
    std::size_t expected = 0;
    for (const auto& property : properties) {
        if (expected < searched.size() && searched[expected].text == property.text) {
            ++expected;
            continue;
        }
        const auto found =
            std::find_if(searched.begin(), searched.end(), [&](const StoredProperty& candidate) {
                return candidate.text == property.text;
            });
        if (found == searched.end()) {
            addName(property.name, names);
            // One that has another value there is more usual than one that is not there.
            ++expected;
        } else {
            expected = static_cast<std::size_t>(found - searched.begin()) + 1;
        }
    }
}

bool split(std::string_view card, Properties& properties)
{
    return splitStored(card, properties) && properties.size() <= kMostProperties &&
           std::any_of(properties.begin(), properties.end(),
                       [](const StoredProperty& property) { return showsName(property.text); });
}

/// Whether the cards differ in the values of UID and REV only. Some cards that cannot be split are
/// known to be alike in this way.
bool haveEqualParts(std::span<const std::string_view> cards)
{
    const auto parts = cards.empty() ? std::nullopt : storedParts(cards.front());
    return parts && std::all_of(cards.begin() + 1, cards.end(),
                                [&](std::string_view card) { return storedParts(card) == parts; });
}

bool compareProperties(std::span<const std::string_view> cards, std::vector<std::string>& names)
{
    constexpr std::size_t kUsualProperties = 16;
    Properties first;
    Properties other;
    first.reserve(kUsualProperties);
    other.reserve(kUsualProperties);
    for (std::size_t i = 0; i < cards.size(); ++i) {
        if (i == 0) {
            if (!split(cards[i], first)) {
                return false;
            }
            continue;
        }
        if (!split(cards[i], other) || !readOthersAlike(first, other)) {
            return false;
        }
        addMissing(first, other, names);
        addMissing(other, first, names);
        if (names.size() > kMostNames) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool findStoredDifferences(std::span<const std::string_view> cards, std::vector<std::string>& names)
{
    names.clear();
    if (compareProperties(cards, names)) {
        return true;
    }
    names.clear();
    return haveEqualParts(cards);
}

}  // namespace dunmora
