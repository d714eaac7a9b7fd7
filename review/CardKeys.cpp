#include "review/CardKeys.h"

#include "platform/PersonCard.h"
#include "review/ComparedText.h"
#include "review/PhoneKeys.h"
#include "text/TextHash.h"
#include "text/WhiteSpace.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <string>

namespace dunmora {

namespace {

constexpr char kEnd = '\0';

// The kinds of keys that no property has the name of, because names are in upper case. A number has
// several endings, so theirs is short.
constexpr std::string_view kListKind = "a list";
constexpr std::string_view kPhoneEndingKind = "end";
constexpr std::string_view kSharedKind = "all that is shared";
constexpr std::string_view kFormattedName = "FN";
constexpr std::string_view kName = "N";

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

std::string_view componentOf(const CardProperty& property, std::size_t index)
{
    return index < property.components.size() ? std::string_view(property.components[index])
                                              : std::string_view();
}

/// Appends the parts that are not empty, with a space between them.
void appendJoined(std::string& text, std::initializer_list<std::string_view> parts)
{
    bool isFirst = true;
    for (const auto part : parts) {
        if (!part.empty()) {
            text += isFirst ? "" : " ";
            text += part;
            isFirst = false;
        }
    }
}

std::string joined(std::initializer_list<std::string_view> parts)
{
    std::string text;
    appendJoined(text, parts);
    return text;
}

/// Whether the name is longer than any that a formatted name repeats.
bool isTooLong(const CardProperty& name)
{
    constexpr std::size_t kLongest = 1000;
    std::size_t length = 0;
    for (const auto& component : name.components) {
        length += component.size();
    }
    return length > kLongest;
}

/// One number for texts of which none can run into the next. Keeps little of them, because a card
/// may hold a photo, or a million phone numbers.
class Hasher final {
public:
    Hasher() { text_.reserve(kUsualSize); }

    void add(std::string_view text)
    {
        addNumber(text.size());
        if (text.size() > kMostKept) {
            addNumber(textHash(text));
        } else {
            text_ += text;
        }
        if (text_.size() > kMostKept) {
            const auto hash = textHash(text_);
            text_.clear();
            addNumber(hash);
        }
    }

    void addNumber(std::uint64_t number)
    {
        std::array<char, sizeof number> bytes{};
        std::memcpy(bytes.data(), &number, sizeof number);
        text_.append(bytes.data(), bytes.size());
    }

    std::uint64_t hash() const { return textHash(text_); }

private:
    // In bytes: those of a card with a dozen properties.
    static constexpr std::size_t kUsualSize = 1024;
    // In bytes: of a text, and of all.
    static constexpr std::size_t kMostKept = 65'536;

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

void restrictToCompared(std::vector<std::string>& names)
{
    std::erase_if(names, isBookkeeping);
    const auto has = [&](std::string_view name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    // A formatted name may be in the structured one.
    if (has(kFormattedName) && !has(kName)) {
        names.emplace_back(kName);
    }
}

void CardKeys::read(const PersonCard& card)
{
    clear();
    addProperties(card.properties);
    auto place = card.properties.size();
    for (const auto& list : card.lists) {
        begin(kListKind);
        text_ += list;
        addBoth();
        properties_.push_back({place, needed_.size()});
        ++place;
    }
}

void CardKeys::readBesidesShared(std::span<const CardProperty> others, const PersonCard& shared,
                                 const CardKeys& keysOfShared)
{
    clear();
    begin(kSharedKind);
    addBoth();
    const auto sharedKey = needed_.front();
    properties_.push_back({std::numeric_limits<std::size_t>::max(), needed_.size()});
    const auto isOfAll = [&](Key key) {
        const auto& keys = keysOfShared.provided_;
        return std::find(keys.begin(), keys.end(), key) != keys.end();
    };
    for (std::size_t place = 0; place < others.size(); ++place) {
        const auto& property = others[place];
        if (isIgnored(property)) {
            continue;
        }
        const auto first = static_cast<std::ptrdiff_t>(needed_.size());
        if (std::find(shared.properties.begin(), shared.properties.end(), property) !=
            shared.properties.end()) {
            needed_.push_back(sharedKey);
        } else {
            addProperty(property);
            if (std::any_of(needed_.begin() + first, needed_.end(), isOfAll)) {
                needed_.push_back(sharedKey);
            }
        }
        properties_.push_back({place, needed_.size()});
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

void CardKeys::addProperties(std::span<const CardProperty> properties)
{
    // In a very large card, growing lists would take half as much again as their keys. A phone
    // number has about eight.
    constexpr std::size_t kLargeCard = 1000;
    constexpr std::size_t kKeysOfProperty = 8;
    if (properties.size() >= kLargeCard) {
        properties_.reserve(properties_.size() + properties.size());
        needed_.reserve(needed_.size() + kKeysOfProperty * properties.size());
        provided_.reserve(provided_.size() + kKeysOfProperty * properties.size());
    }
    for (std::size_t place = 0; place < properties.size(); ++place) {
        if (!isIgnored(properties[place])) {
            addProperty(properties[place]);
            properties_.push_back({place, needed_.size()});
        }
    }
}

void CardKeys::addProperty(const CardProperty& property)
{
    if (property.name == "TEL" && !property.binary) {
        addPhone(property);
        return;
    }
    if (property.name == kName) {
        addName(property);
    }
    begin(property.name);
    appendComparedText(text_, property);
    addBoth();
}

void CardKeys::addName(const CardProperty& property)
{
    // A name without the additional names, the prefix or the suffix is in this one, too.
    constexpr std::size_t kFirstOptional = 2;
    const auto provideWithout = [&](OmittedComponents omitted) {
        begin(property.name);
        appendComparedText(text_, property, omitted);
        provide();
    };
    for (std::size_t i = kFirstOptional; i < property.components.size(); ++i) {
        if (!showsNothing(property.components[i])) {
            provideWithout({i, i + 1});
            provideWithout({i, property.components.size()});
        }
    }
    if (!isTooLong(property)) {
        addFormattedNames(property);
    }
}

/// Provides the ways to write a structured name (RFC 6350 §6.2.2) in one line. A formatted name
/// that is one of these adds nothing to it.
void CardKeys::addFormattedNames(const CardProperty& name)
{
    const auto family = withFoldedWhiteSpace(componentOf(name, 0));
    const auto given = withFoldedWhiteSpace(componentOf(name, 1));
    const auto additional = withFoldedWhiteSpace(componentOf(name, 2));
    const auto prefix = withFoldedWhiteSpace(componentOf(name, 3));
    const auto suffix = withFoldedWhiteSpace(componentOf(name, 4));
    const auto commaSuffix = showsNothing(suffix) ? std::string() : ", " + suffix;
    const auto add = [&](std::initializer_list<std::string_view> parts, std::string_view end = {}) {
        begin(kFormattedName);
        appendJoined(text_, parts);
        text_ += end;
        provide();
    };
    // Parts that the name does not have would only give the same names again.
    const auto addWithEnds = [&](std::string_view middle) {
        add({middle});
        if (!prefix.empty()) {
            add({prefix, middle});
        }
        if (!suffix.empty()) {
            add({middle, suffix});
        }
        if (!prefix.empty() && !suffix.empty()) {
            add({prefix, middle, suffix});
        }
        if (!commaSuffix.empty()) {
            add({middle}, commaSuffix);
        }
    };

    addWithEnds(joined({given, family}));
    add({family, given});
    add({prefix, family});
    // White space at the border of the two stays.
    add({withFoldedWhiteSpace(std::string(componentOf(name, 0)).append(componentOf(name, 1)))});
    const auto full = joined({given, additional, family});
    if (!additional.empty()) {
        addWithEnds(full);
        add({family, given, additional});
    }
    if (!prefix.empty() && !commaSuffix.empty()) {
        add({prefix, full}, commaSuffix);
    }
    if (!showsNothing(family) && !showsNothing(given)) {
        const auto familyComma = family + ",";
        add({familyComma, given});
        if (!additional.empty()) {
            add({familyComma, given, additional});
        }
    }
}

void CardKeys::addPhone(const CardProperty& property)
{
    const auto keys = phoneKeys(componentOf(property, 0));
    for (const auto& text : keys.texts) {
        begin(property.name);
        text_ += text;
        addBoth();
    }
    for (std::size_t i = 0; i < keys.endings; ++i) {
        begin(kPhoneEndingKind);
        text_ += keys.ending(i);
        const auto national = textHash(text_);
        const auto international = ~national;
        const bool isNational = keys.kind == PhoneKeys::Kind::National;
        needed_.push_back(isNational ? international : national);
        provided_.push_back(isNational ? national : international);
    }
}

void CardKeys::begin(std::string_view kind)
{
    text_ = kind;
    text_ += kEnd;
}

void CardKeys::provide()
{
    provided_.push_back(textHash(text_));
}

void CardKeys::addBoth()
{
    provide();
    needed_.push_back(provided_.back());
}

std::uint64_t hashOf(const PersonCard& card)
{
    Hasher hasher;
    for (const auto& property : card.properties) {
        hasher.add(property.name);
        hasher.add(property.label);
        hasher.addNumber(property.components.size());
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
