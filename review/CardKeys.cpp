#include "review/CardKeys.h"

#include "platform/PersonCard.h"
#include "review/ComparedText.h"
#include "review/PhoneKeys.h"
#include "text/TextHash.h"
#include "text/WhiteSpace.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <limits>
#include <string>

namespace dunmora {

namespace {

constexpr char kEnd = '\0';

// The kinds of keys that no property has the name of.
constexpr std::string_view kListKind = "a list";
constexpr std::string_view kPhoneEndingKind = "a phone's ending";
constexpr std::string_view kFormattedName = "FN";

bool isBookkeeping(std::string_view name)
{
    constexpr auto kNames = std::to_array<std::string_view>({
        "BEGIN",
        "CLIENTPIDMAP",
        "CREATED",
        "END",
        "KIND",
        "PRODID",
        "PROFILE",
        "REV",
        "UID",
        "VERSION",
        "X-ABADR",
        "X-ABLABEL",
        "X-ABSHOWAS",
        "X-ABUID",
        "X-ADDRESSBOOKSERVER-KIND",
        "X-EVOLUTION-DEST-CONTACT-UID",
        "X-EVOLUTION-DEST-SOURCE-UID",
        "X-EVOLUTION-FILE-AS",
        "X-EVOLUTION-WEBDAV-ETAG",
        "X-EVOLUTION-WEBDAV-HREF",
        "X-MOZILLA-HTML",
        "X-MS-OL-DEFAULT-POSTAL-ADDRESS",
        "X-MS-OL-DESIGN",
        "X-MS-SIGNATURE",
    });
    return std::binary_search(kNames.begin(), kNames.end(), name);
}

CardKeys::Key keyOf(std::string_view kind, std::string_view value)
{
    std::string text(kind);
    text += kEnd;
    text += value;
    return textHash(text);
}

std::string_view componentOf(const CardProperty& property, std::size_t index)
{
    return index < property.components.size() ? std::string_view(property.components[index])
                                              : std::string_view();
}

/// The parts that are not blank, with a space between them.
std::string joined(std::initializer_list<std::string_view> parts)
{
    std::string text;
    for (const auto part : parts) {
        text += part;
        text += ' ';
    }
    return withFoldedWhiteSpace(text);
}

/// How a structured name (RFC 6350 §6.2.2) is written in one line. A formatted name that is one of
/// these adds nothing to it. None for a name that is too long to be one.
std::vector<std::string> formattedNames(const CardProperty& name)
{
    constexpr std::size_t kLongest = 1000;
    std::size_t length = 0;
    for (const auto& component : name.components) {
        length += component.size();
    }
    if (length > kLongest) {
        return {};
    }
    const auto family = componentOf(name, 0);
    const auto given = componentOf(name, 1);
    const auto additional = componentOf(name, 2);
    const auto prefix = componentOf(name, 3);
    const auto suffix = componentOf(name, 4);
    const auto middle = joined({given, additional, family});
    std::vector<std::string> names{
        joined({given, family}),
        joined({family, given}),
        joined({family, given, additional}),
        withFoldedWhiteSpace(std::string(family) + std::string(given)),
        joined({given, family, suffix}),
        joined({prefix, given, family}),
        joined({prefix, family}),
        joined({prefix, given, family, suffix}),
        middle,
        joined({prefix, middle}),
        joined({middle, suffix}),
        joined({prefix, middle, suffix}),
    };
    if (!showsNothing(family) && !showsNothing(given)) {
        const auto comma = withFoldedWhiteSpace(family) + ", ";
        names.push_back(comma + joined({given}));
        names.push_back(comma + joined({given, additional}));
    }
    if (!showsNothing(suffix)) {
        const auto comma = ", " + withFoldedWhiteSpace(suffix);
        names.push_back(joined({given, family}) + comma);
        names.push_back(middle + comma);
        names.push_back(joined({prefix, middle}) + comma);
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

/// One number for texts of which none can run into the next.
class Hasher final {
public:
    void add(std::string_view text)
    {
        text_ += std::to_string(text.size());
        text_ += ':';
        text_ += text;
    }

    std::uint64_t hash() const { return textHash(text_); }

private:
    std::string text_;
};

}  // namespace

bool isIgnored(const CardProperty& property)
{
    if (isBookkeeping(property.name)) {
        return true;
    }
    if (property.binary) {
        return property.binary->bytes.empty();
    }
    return std::all_of(property.components.begin(), property.components.end(),
                       [](const std::string& component) { return showsNothing(component); });
}

void CardKeys::read(const PersonCard& card)
{
    clear();
    std::size_t place = 0;
    for (const auto& property : card.properties) {
        if (!isIgnored(property)) {
            addProperty(property);
            properties_.push_back({place, needed_.size()});
        }
        ++place;
    }
    for (const auto& list : card.lists) {
        addBoth(kListKind, list);
        properties_.push_back({place, needed_.size()});
        ++place;
    }
}

void CardKeys::setUnknown()
{
    clear();
    properties_.push_back({std::numeric_limits<std::size_t>::max(), 0});
}

std::span<const CardKeys::Key> CardKeys::neededBy(std::size_t property) const
{
    const auto begin = property == 0 ? 0 : properties_[property - 1].needsEnd;
    return std::span(needed_).subspan(begin, properties_[property].needsEnd - begin);
}

void CardKeys::clear()
{
    properties_.clear();
    needed_.clear();
    provided_.clear();
}

void CardKeys::addProperty(const CardProperty& property)
{
    if (property.name == "TEL" && !property.binary) {
        addPhone(property);
        return;
    }
    if (property.name == "N") {
        addName(property);
    }
    addBoth(property.name, comparedText(property));
}

void CardKeys::addName(const CardProperty& property)
{
    // A name without the additional names, the prefix or the suffix is in this one, too.
    constexpr std::size_t kFirstOptional = 2;
    for (std::size_t i = kFirstOptional; i < property.components.size(); ++i) {
        if (showsNothing(property.components[i])) {
            continue;
        }
        auto shorter = property;
        shorter.components[i].clear();
        provided_.push_back(keyOf(property.name, comparedText(shorter)));
        for (auto j = i + 1; j < property.components.size(); ++j) {
            shorter.components[j].clear();
        }
        provided_.push_back(keyOf(property.name, comparedText(shorter)));
    }
    for (const auto& name : formattedNames(property)) {
        provided_.push_back(keyOf(kFormattedName, name));
    }
}

void CardKeys::addPhone(const CardProperty& property)
{
    const auto keys = phoneKeys(componentOf(property, 0));
    for (const auto& text : keys.texts) {
        addBoth(property.name, text);
    }
    for (const auto& ending : keys.endings) {
        const auto national = keyOf(kPhoneEndingKind, ending);
        const auto international = ~national;
        const bool isNational = keys.kind == PhoneKeys::Kind::National;
        needed_.push_back(isNational ? international : national);
        provided_.push_back(isNational ? national : international);
    }
}

void CardKeys::addBoth(std::string_view kind, std::string_view value)
{
    const auto key = keyOf(kind, value);
    needed_.push_back(key);
    provided_.push_back(key);
}

std::uint64_t hashOf(const PersonCard& card)
{
    Hasher hasher;
    for (const auto& property : card.properties) {
        hasher.add(property.name);
        hasher.add(property.label);
        hasher.add(std::to_string(property.components.size()));
        for (const auto& component : property.components) {
            hasher.add(component);
        }
        if (property.binary) {
            hasher.add("binary");
            hasher.add(property.binary->mediaType);
            hasher.add(property.binary->bytes);
        }
    }
    for (const auto& list : card.lists) {
        hasher.add("list");
        hasher.add(list);
    }
    return hasher.hash();
}

}  // namespace dunmora
