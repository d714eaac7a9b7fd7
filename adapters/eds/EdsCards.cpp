#include "adapters/eds/EdsCards.h"

#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/Lines.h"
#include "adapters/vcard/Property.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>

namespace dunmora {

namespace {

std::string upperCase(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), toUpperAscii);
    return upper;
}

bool isBookkeeping(std::string_view name)
{
    constexpr std::array<std::string_view, 8> kNames{"BEGIN",
                                                     "END",
                                                     "VERSION",
                                                     "UID",
                                                     "REV",
                                                     "PRODID",
                                                     "X-EVOLUTION-WEBDAV-ETAG",
                                                     "X-EVOLUTION-WEBDAV-HREF"};
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

std::string withoutQuotes(std::string_view text)
{
    std::string plain(text);
    std::erase(plain, '"');
    return plain;
}

/// The parameters in one spelling: TYPE="home,voice", TYPE=HOME;TYPE=VOICE and HOME;VOICE, as vCard
/// 2.1 writes it, are the same.
std::string comparableParameters(std::string_view parameters)
{
    // The service adds it to telephone numbers.
    constexpr std::string_view kInternational = "X-EVOLUTION-E164";
    std::vector<std::string> texts;
    while (!parameters.empty()) {
        const auto [name, value] = takeParameter(parameters);
        const auto upper = upperCase(name);
        if (name.empty() || upper == "TYPE") {
            const auto types = upperCase(withoutQuotes(value));
            for (std::size_t begin = 0; begin <= types.size();) {
                const auto end = std::min(types.find(',', begin), types.size());
                texts.push_back("TYPE=" + types.substr(begin, end - begin));
                begin = end + 1;
            }
        } else if (upper != kInternational) {
            texts.push_back(upper + "=" + withoutQuotes(value));
        }
    }
    std::sort(texts.begin(), texts.end());
    std::string all;
    for (const auto& text : texts) {
        all += ";" + text;
    }
    return all;
}

/// A property in one spelling; empty when it does not count.
std::string comparableProperty(std::string_view property)
{
    const auto head = headOf(property);
    if (!head.isComplete) {
        return std::string(trimmed(property));
    }
    const auto [group, name] = splitName(property.substr(0, head.nameEnd));
    const auto upper = upperCase(name);
    if (isBookkeeping(upper)) {
        return {};
    }
    return upperCase(group) + "." + upper +
           comparableParameters(property.substr(head.nameEnd, head.colon - head.nameEnd)) +
           std::string(property.substr(head.colon));
}

}  // namespace

EdsBackup readBackup(std::string_view content)
{
    const auto encoding = detectEncoding(content);
    const bool isUtf16 = encoding != FileEncoding::Bytes;
    const auto decoded = isUtf16 ? utf16ToUtf8(content, encoding) : std::string();
    const auto text = isUtf16 ? std::string_view(decoded) : content;
    CardReader reader;
    CardReader::Cards cards;
    reader.read(text, isUtf16 ? CardReader::Text::Utf8 : CardReader::Text::Bytes, cards);

    EdsBackup backup;
    backup.skipped = cards.skipped.size();
    backup.groups = cards.groups.size();
    for (std::size_t i = 0; i < cards.people.size(); ++i) {
        const auto& range = cards.ranges[i];
        const auto card = text.substr(range.begin, range.end - range.begin - range.lineEndSize);
        if (isUtf8(card)) {
            backup.people.push_back({std::string(cards.people[i].uid), std::string(card)});
        } else {
            ++backup.unreadable;
        }
    }
    return backup;
}

std::string nameIn(const ContactText& person)
{
    CardReader reader;
    CardReader::Cards cards;
    reader.read(person.card, CardReader::Text::Utf8, cards);
    std::string name;
    if (!cards.people.empty()) {
        const auto& read = cards.people.front();
        name = read.firstName.value_or("");
        const auto last = read.lastName.value_or("");
        name += name.empty() || last.empty() ? "" : " ";
        name += last;
        if (name.empty()) {
            name = read.nickname.value_or("");
        }
        if (name.empty() && read.phones && !read.phones->empty()) {
            name = read.phones->front().value;
        }
    }
    return name.empty() ? person.uid : name;
}

std::string comparable(std::string_view card)
{
    std::vector<std::string> properties;
    Lines lines(card);
    for (std::size_t begin = 0; begin < card.size();) {
        auto line = lines.at(begin);
        while (line.next < card.size() && isBlank(card[line.next])) {
            line = lines.at(line.next);
        }
        auto property = comparableProperty(
            unfold(card.substr(begin, line.end - begin), FoldBlank::Remove, SoftBreaks::Keep));
        if (!property.empty()) {
            properties.push_back(std::move(property));
        }
        begin = line.next;
    }
    std::sort(properties.begin(), properties.end());
    std::string text;
    for (const auto& property : properties) {
        text += property + '\n';
    }
    return text;
}

std::string withUid(std::string_view card, std::string_view uid)
{
    const auto begin = Lines(card).at(0);
    const auto lineEnd = card.substr(begin.end, begin.next - begin.end);
    return std::string(card.substr(0, begin.next)) + "UID:" + std::string(uid) +
           std::string(lineEnd) + std::string(card.substr(begin.next));
}

std::string newUid()
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr int kCharacters = 32;
    constexpr unsigned kMask = 15;
    std::random_device random;
    std::string uid = "dunmora-";
    for (int i = 0; i < kCharacters; ++i) {
        uid += kDigits[random() & kMask];
    }
    return uid;
}

}  // namespace dunmora
