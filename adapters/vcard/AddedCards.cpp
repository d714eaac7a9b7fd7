#include "adapters/vcard/AddedCards.h"

#include "adapters/posix/FileBytes.h"
#include "text/Ascii.h"
#include "text/LookAhead.h"
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

/// The text of a card by which it is compared: its lines, whatever ends them. The result may be in
/// `memory`.
std::string_view comparable(std::string_view text, std::string& memory)
{
    constexpr std::string_view kLineEnd = "\r\n";
    memory.clear();
    std::size_t begin = 0;
    for (auto end = text.find(kLineEnd); end != std::string_view::npos;
         end = text.find(kLineEnd, begin)) {
        memory += text.substr(begin, end - begin);
        begin = end + 1;
    }
    if (begin == 0) {
        return text;
    }
    memory += text.substr(begin);
    return memory;
}

std::uint64_t hashOf(std::string_view text, std::string& memory)
{
    return TextIndex::hashOf(comparable(text, memory));
}

/// Whether cards with these texts are the same.
bool areSame(std::string_view left, std::string_view right)
{
    std::string leftMemory;
    std::string rightMemory;
    return left == right || comparable(left, leftMemory) == comparable(right, rightMemory);
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

std::string AddedCards::AddedCard::name() const
{
    return nameOf(*person);
}

AddedCards::AddedCards(const CardFile& file) : file_(file)
{
    read_.hashesUids = true;
    file.read(reader_, read_);
    const auto count = read_.people.size();
    byText_.reset(count);
    byUid_.reset(count);
    isTextInBook_.resize(count);
    isUidInBook_.resize(count);
    cards_.reserve(count);
    CardBytesFinder finder(file);
    for (std::size_t i = 0; i < count; ++i) {
        const auto [range, lineEndSize] = finder.bytesOf(read_.ranges[i]);
        const auto bytes = file.bytes().substr(range.begin, range.end - range.begin);
        const auto size = bytes.size() - lineEndSize;
        cards_.push_back({bytes.substr(0, size), bytes.substr(size), &read_.people[i],
                          firstWithTextOf(i), firstWithUidOf(i)});
    }
    read_.uidHashes = {};
}

std::uint32_t AddedCards::firstWithTextOf(std::size_t number)
{
    const auto text = textOf(file_, read_.ranges[number]);
    std::string memory;
    const auto isAt = [&](std::size_t other) {
        return areSame(textOf(file_, read_.ranges[other]), text);
    };
    return static_cast<std::uint32_t>(
        byText_.findOrAdd(hashOf(text, memory), isAt, [&] { return number; }).first);
}

std::uint32_t AddedCards::firstWithUidOf(std::size_t number)
{
    const auto uid = read_.people[number].uid;
    const auto isAt = [&](std::size_t other) { return read_.people[other].uid == uid; };
    return static_cast<std::uint32_t>(
        uid.empty()
            ? number
            : byUid_.findOrAdd(read_.uidHashes[number], isAt, [&] { return number; }).first);
}

void AddedCards::compareWith(const CardFile& file)
{
    CardReader reader;
    CardReader::Cards cards;
    cards.hashesUids = true;
    file.read(reader, cards);
    std::string memory;
    visitWithLookAhead<std::uint64_t>(
        cards.people.size(),
        [&](std::size_t i, std::uint64_t& textHash) {
            textHash = hashOf(textOf(file, cards.ranges[i]), memory);
            byText_.prefetch(textHash);
            byUid_.prefetch(cards.uidHashes[i]);
        },
        [&](std::size_t i, std::uint64_t textHash) {
            const auto text = textOf(file, cards.ranges[i]);
            const auto sameText = byText_.find(textHash, [&](std::size_t added) {
                return areSame(textOf(file_, read_.ranges[added]), text);
            });
            if (sameText != TextIndex::kNowhere) {
                isTextInBook_[sameText] = true;
            }
            const auto uid = cards.people[i].uid;
            const auto sameUid = byUid_.find(cards.uidHashes[i], [&](std::size_t added) {
                return read_.people[added].uid == uid;
            });
            if (sameUid != TextIndex::kNowhere) {
                isUidInBook_[sameUid] = true;
            }
        });
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
