#include "review/CardLines.h"

#include "review/CardKeys.h"
#include "review/PropertyTexts.h"
#include "text/DisplayText.h"
#include "text/WhiteSpace.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kMembership = "MEMBER";

using KeySet = std::unordered_set<CardKeys::Key>;

bool isIn(std::span<const CardKeys::Key> needed, const KeySet& provided)
{
    return std::any_of(needed.begin(), needed.end(),
                       [&](CardKeys::Key key) { return provided.contains(key); });
}

KeySet providedBy(std::span<const PersonCard> cards)
{
    KeySet keys;
    for (const auto& card : cards) {
        const CardKeys read(card);
        keys.insert(read.provided().begin(), read.provided().end());
    }
    return keys;
}

/// Whether one property can be what a card has instead of the other.
bool areAlternatives(const CardProperty& a, const CardProperty& b)
{
    return a.name == b.name &&
           (!isOneOfSeveral(a.name) || (!a.label.empty() && a.label == b.label));
}

/// The properties of kept cards that a card has not.
class Alternatives final {
public:
    Alternatives(const CardKeys& keys, std::span<const PersonCard> kept)
    {
        const KeySet own(keys.provided().begin(), keys.provided().end());
        for (const auto& card : kept) {
            const CardKeys other(card);
            for (std::size_t i = 0; i < other.size(); ++i) {
                if (other.placeOf(i) < card.properties.size() && !isIn(other.neededBy(i), own)) {
                    properties_.push_back(&card.properties[other.placeOf(i)]);
                }
            }
        }
    }

    /// Null when no kept card has anything instead.
    const CardProperty* insteadOf(const CardProperty& property) const
    {
        const auto found =
            std::find_if(properties_.begin(), properties_.end(), [&](const CardProperty* other) {
                return areAlternatives(property, *other);
            });
        return found == properties_.end() ? nullptr : *found;
    }

private:
    std::vector<const CardProperty*> properties_;
};

CardLine lineOf(const PersonCard& card, std::size_t place)
{
    CardLine line;
    if (place >= card.properties.size()) {
        line.property = kMembership;
        line.title = "In the list";
        line.value = card.lists[place - card.properties.size()];
        return line;
    }
    const auto& property = card.properties[place];
    line.property = property.name;
    line.title = propertyTitle(property);
    line.value = propertyValue(property);
    if (property.binary && (property.name == "PHOTO" || property.name == "LOGO")) {
        line.picture = property.binary->bytes;
    }
    return line;
}

/// The lines without verdicts: one for each compared property.
std::vector<CardLine> linesOf(const PersonCard& card, const CardKeys& keys)
{
    std::vector<CardLine> lines;
    lines.reserve(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        lines.push_back(lineOf(card, keys.placeOf(i)));
    }
    return lines;
}

/// The beginning of the value on one line; empty for a value that would only fill the line.
std::string shortValue(const OnlyHere& only)
{
    constexpr std::size_t kMaxBytes = 60;
    const auto& name = only.property;
    if (name == "NOTE" || name == "PHOTO" || name == "LOGO" || name == "SOUND" || name == "KEY") {
        return {};
    }
    return shownText(withFoldedWhiteSpace(windowText(shownPart(only.value))), kMaxBytes);
}

}  // namespace

std::vector<CardLine> cardLines(const PersonCard& card, std::span<const PersonCard> kept)
{
    const CardKeys keys(card);
    if (kept.empty()) {
        return linesOf(card, keys);
    }
    const auto provided = providedBy(kept);
    return cardLines(card, kept,
                     [&](std::size_t property) { return isIn(keys.neededBy(property), provided); });
}

std::vector<CardLine> cardLines(const PersonCard& card, std::span<const PersonCard> kept,
                                const std::function<bool(std::size_t property)>& isKept)
{
    const CardKeys keys(card);
    const Alternatives alternatives(keys, kept);
    auto lines = linesOf(card, keys);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        auto& line = lines[i];
        const auto place = keys.placeOf(i);
        const auto* const instead = place < card.properties.size()
                                        ? alternatives.insteadOf(card.properties[place])
                                        : nullptr;
        if (isKept(i)) {
            line.verdict = CardVerdict::Same;
        } else if (instead != nullptr) {
            line.verdict = CardVerdict::Different;
            line.keptValue = propertyValue(*instead);
        } else {
            line.verdict = CardVerdict::OnlyHere;
        }
    }
    return lines;
}

std::string enumeratedText(std::span<const OnlyHere> properties)
{
    constexpr std::size_t kMostNamed = 12;
    std::string text;
    for (std::size_t i = 0; i < properties.size(); ++i) {
        text += text.empty() ? "" : ", ";
        if (i == kMostNamed) {
            return text + "and " + std::to_string(properties.size() - i) + " more";
        }
        const auto value = shortValue(properties[i]);
        if (properties[i].property == kMembership) {
            text += "in the list " + quotedText(value);
        } else {
            text += windowText(shownPart(propertyWord(properties[i].property)));
            text += value.empty() ? "" : " " + value;
        }
    }
    return text;
}

}  // namespace dunmora
