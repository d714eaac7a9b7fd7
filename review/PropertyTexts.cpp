#include "review/PropertyTexts.h"

#include "platform/PersonCard.h"
#include "text/Ascii.h"
#include "text/WhiteSpace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace dunmora {

namespace {

struct Word {
    std::string_view name;
    std::string_view word;
    bool isOneOfSeveral = false;
};

constexpr auto kWords = std::to_array<Word>({
    {"ADR", "address", true},
    {"ANNIVERSARY", "anniversary"},
    {"ASSISTANT", "assistant"},
    {"BDAY", "birthday"},
    {"CALADRURI", "address for invitations", true},
    {"CALURI", "calendar", true},
    {"CATEGORIES", "category", true},
    {"DEATHDATE", "date of death"},
    {"EMAIL", "e-mail", true},
    {"FBURL", "free/busy times", true},
    {"FN", "full name"},
    {"GENDER", "gender"},
    {"GEO", "location"},
    {"IMPP", "instant messages", true},
    {"KEY", "key", true},
    {"LABEL", "address label", true},
    {"LANG", "language", true},
    {"LOGO", "logo"},
    {"MEMBER", "list", true},
    {"N", "name"},
    {"NICKNAME", "nickname", true},
    {"NOTE", "note"},
    {"ORG", "organisation"},
    {"PHOTO", "photo"},
    {"RELATED", "related person", true},
    {"ROLE", "role"},
    {"SORT-STRING", "sorted as"},
    {"SOUND", "sound"},
    {"TEL", "phone", true},
    {"TITLE", "job title"},
    {"TZ", "time zone"},
    {"URL", "web page", true},
    {"X-ABDATE", "date", true},
    {"X-ABRELATEDNAMES", "related person", true},
    {"X-ADDRESSBOOKSERVER-MEMBER", "member", true},
    {"X-AIM", "AIM", true},
    {"X-ANNIVERSARY", "anniversary"},
    {"X-ASSISTANT", "assistant"},
    {"X-EVOLUTION-ANNIVERSARY", "anniversary"},
    {"X-EVOLUTION-ASSISTANT", "assistant"},
    {"X-EVOLUTION-BLOG-URL", "weblog", true},
    {"X-EVOLUTION-MANAGER", "manager"},
    {"X-EVOLUTION-SPOUSE", "spouse"},
    {"X-EVOLUTION-VIDEO-URL", "video chat", true},
    {"X-GADUGADU", "Gadu-Gadu", true},
    {"X-GROUPWISE", "GroupWise", true},
    {"X-ICQ", "ICQ", true},
    {"X-JABBER", "Jabber", true},
    {"X-MAIDENNAME", "maiden name"},
    {"X-MANAGER", "manager"},
    {"X-MSN", "MSN", true},
    {"X-PHONETIC-FIRST-NAME", "phonetic first name"},
    {"X-PHONETIC-LAST-NAME", "phonetic last name"},
    {"X-PHONETIC-MIDDLE-NAME", "phonetic middle name"},
    {"X-PHONETIC-ORG", "phonetic organisation"},
    {"X-SKYPE", "Skype", true},
    {"X-SOCIALPROFILE", "social profile", true},
    {"X-SPOUSE", "spouse"},
    {"X-TWITTER", "Twitter", true},
    {"X-YAHOO", "Yahoo", true},
});
static_assert(std::is_sorted(kWords.begin(), kWords.end(),
                             [](const Word& a, const Word& b) { return a.name < b.name; }));

/// Null for a property without a word.
const Word* wordOf(std::string_view name)
{
    const auto* const found = std::lower_bound(
        kWords.begin(), kWords.end(), name,
        [](const Word& word, std::string_view wanted) { return word.name < wanted; });
    return found != kWords.end() && found->name == name ? found : nullptr;
}

/// What a type of the standard is called; empty for one that tells the user nothing.
struct Type {
    std::string_view type;
    std::string_view word;
};

constexpr auto kTypes = std::to_array<Type>({
    {"CELL", "mobile"},
    {"DOM", ""},
    {"FAX", "fax"},
    {"HOME", "home"},
    {"INTERNET", ""},
    {"INTL", ""},
    {"MAIN", "main"},
    {"MOBILE", "mobile"},
    {"OTHER", "other"},
    {"PAGER", "pager"},
    {"PARCEL", ""},
    {"POSTAL", ""},
    {"PREF", ""},
    {"TEXT", "text"},
    {"VIDEO", "video"},
    {"VOICE", ""},
    {"WORK", "work"},
});

std::string typeText(std::string_view type)
{
    constexpr std::string_view kBegin = "_$!<";
    constexpr std::string_view kEnd = ">!$_";
    if (type.starts_with(kBegin) && type.ends_with(kEnd) &&
        type.size() >= kBegin.size() + kEnd.size()) {
        std::string word(type.substr(kBegin.size(), type.size() - kBegin.size() - kEnd.size()));
        std::transform(word.begin(), word.end(), word.begin(), toLowerAscii);
        return word;
    }
    const auto* const found = std::find_if(kTypes.begin(), kTypes.end(), [&](const Type& known) {
        return equalsIgnoringCase(known.type, type);
    });
    return std::string(found == kTypes.end() ? type : found->word);
}

/// The label as the user knows it: "work, fax".
std::string labelText(std::string_view label)
{
    constexpr std::string_view kSeparator = ", ";
    std::vector<std::string> words;
    for (std::size_t begin = 0; begin <= label.size();) {
        const auto end = std::min(label.find(kSeparator, begin), label.size());
        auto word = typeText(label.substr(begin, end - begin));
        if (!showsNothing(word) && std::find(words.begin(), words.end(), word) == words.end()) {
            words.push_back(std::move(word));
        }
        begin = end + kSeparator.size();
    }
    std::string text;
    for (const auto& word : words) {
        text += (text.empty() ? "" : kSeparator);
        text += word;
    }
    return text;
}

/// "12 KB", rounded up; 1000 bytes are one, as on a disk.
std::string sizeText(std::size_t bytes)
{
    constexpr std::size_t kThousand = 1000;
    return std::to_string(bytes / kThousand + (bytes % kThousand > 0 ? 1 : 0)) + " KB";
}

/// The components at these places that are not blank.
std::string joinedComponents(const std::vector<std::string>& components,
                             std::span<const std::size_t> places, std::string_view separator)
{
    std::string text;
    for (const auto place : places) {
        if (place < components.size() && !showsNothing(components[place])) {
            text += text.empty() ? "" : separator;
            text += components[place];
        }
    }
    return text;
}

}  // namespace

std::string propertyWord(std::string_view name)
{
    const auto* const word = wordOf(name);
    return std::string(word == nullptr ? name : word->word);
}

std::string propertyTitle(const CardProperty& property)
{
    auto title = propertyWord(property.name);
    if (!title.empty()) {
        title.front() = toUpperAscii(title.front());
    }
    // The types of a binary value are those of its data.
    const auto label = property.binary ? std::string() : labelText(property.label);
    return label.empty() ? title : title + " (" + label + ")";
}

std::string propertyValue(const CardProperty& property)
{
    if (property.binary) {
        const auto& type = property.binary->mediaType;
        return (type.empty() ? "" : type + ", ") + sizeText(property.binary->bytes.size());
    }
    const auto& components = property.components;
    if (property.name == "N") {
        // The prefix and the given names come before the family name (RFC 6350 §6.2.2).
        constexpr std::array<std::size_t, 5> kPlaces = {3, 1, 2, 0, 4};
        return joinedComponents(components, kPlaces, " ");
    }
    std::vector<std::size_t> places(components.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        places[i] = i;
    }
    return joinedComponents(components, places, ", ");
}

bool isOneOfSeveral(std::string_view name)
{
    const auto* const word = wordOf(name);
    return word != nullptr && word->isOneOfSeveral;
}

}  // namespace dunmora
