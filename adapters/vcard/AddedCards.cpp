#include "adapters/vcard/AddedCards.h"

#include "adapters/posix/FileBytes.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

std::string nameOf(const Person& person)
{
    std::string name(person.firstName.value_or(""));
    const auto last = person.lastName.value_or("");
    name += name.empty() || last.empty() ? "" : " ";
    name += last;
    if (name.empty()) {
        name = person.nickname.value_or("");
    }
    if (name.empty() && person.phones && !person.phones->empty()) {
        name = person.phones->front().value;
    }
    return name.empty() ? std::string(person.uid) : name;
}

/// The text of a card by which it is compared: its lines, whatever ends them.
std::string comparable(std::string_view text)
{
    std::string lines;
    lines.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') {
            lines += text[i];
        }
    }
    return lines;
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Whether a value may be in another character set than UTF-8. One more text that looks like the
/// parameter does no harm.
bool namesCharset(std::string_view card)
{
    constexpr std::string_view kCharset = "CHARSET=";
    return std::search(card.begin(), card.end(), kCharset.begin(), kCharset.end(),
                       [](char a, char b) { return toUpperAscii(a) == b; }) != card.end();
}

std::string_view textOf(const CardFile& file, const CardRange& range)
{
    return file.text().substr(range.begin, range.end - range.begin - range.lineEndSize);
}

}  // namespace

CardFile cardFileOf(const std::filesystem::path& name, std::string_view bytes)
{
    return {name, FileBytes::keptElsewhere(bytes)};
}

AddedCards::AddedCards(const CardFile& file) : encoding_(file.encoding())
{
    CardReader reader;
    CardReader::Cards cards;
    file.read(reader, cards);
    CardBytesFinder finder(file);
    for (std::size_t i = 0; i < cards.ranges.size(); ++i) {
        const auto [range, lineEndSize] = finder.bytesOf(cards.ranges[i]);
        const auto bytes = file.bytes().substr(range.begin, range.end - range.begin);
        const auto size = bytes.size() - lineEndSize;
        const auto& person = cards.people[i];
        cards_.push_back(
            {bytes.substr(0, size), bytes.substr(size), nameOf(person), std::string(person.uid)});
        byText_.emplace(comparable(textOf(file, cards.ranges[i])), i);
        if (!person.uid.empty()) {
            byUid_.emplace(person.uid, i);
        }
    }
    skipped_ = std::move(cards.skipped);
    groups_ = cards.groups.size();
}

void AddedCards::compareWith(const CardFile& file)
{
    CardReader reader;
    CardReader::Cards cards;
    file.read(reader, cards);
    for (std::size_t i = 0; i < cards.people.size(); ++i) {
        markAll(byText_, comparable(textOf(file, cards.ranges[i])), &AddedCard::isPresent);
        markAll(byUid_, std::string(cards.people[i].uid), &AddedCard::isUidTaken);
    }
}

/// Marks the cards with this key, and forgets it: with thousands of equal cards on both sides, each
/// of the book's would otherwise visit every one.
void AddedCards::markAll(Index& index, const std::string& key, bool AddedCard::*mark)
{
    const auto [begin, end] = index.equal_range(key);
    for (auto found = begin; found != end; ++found) {
        cards_[found->second].*mark = true;
    }
    index.erase(begin, end);
}

std::optional<std::string> converted(std::string_view card, FileEncoding from, FileEncoding to)
{
    if (from == to) {
        return std::string(card);
    }
    auto text = from == FileEncoding::Bytes ? std::string(card) : utf16ToUtf8(card, from);
    // A value in a character set of its own would be read differently.
    if (!isAscii(text) && (!isUtf8(text) || namesCharset(text))) {
        return std::nullopt;
    }
    // Halves of surrogate pairs are not text.
    if (from != FileEncoding::Bytes && utf8ToUtf16(text, from) != card) {
        return std::nullopt;
    }
    return to == FileEncoding::Bytes ? text : utf8ToUtf16(text, to);
}

}  // namespace dunmora
