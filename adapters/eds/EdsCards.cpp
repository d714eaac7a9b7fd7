#include "adapters/eds/EdsCards.h"

#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/Lines.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/Utf8.h"

#include <random>

namespace dunmora {

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
