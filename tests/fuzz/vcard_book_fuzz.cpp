#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/TextDecoding.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "platform/PlatformError.h"
#include "tests/fakes/TemporaryFolder.h"
#include "tests/fuzz/PersonChecks.h"
#include "tests/fuzz/Requirement.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using dunmora::CardReader;
using dunmora::FileEncoding;
using dunmora::VCardAddressBook;
using dunmora::test::contentOf;
using dunmora::test::hasOnlyUtf8;
using dunmora::test::haveSameFields;
using dunmora::test::require;
using dunmora::test::TemporaryFolder;

/// Numbers that depend on the whole input. The book is then all of the input, and any seed and any
/// finding is a file of vCards.
class Choices final {
public:
    explicit Choices(std::string_view input)
    {
        for (const char c : input) {
            state_ = (state_ ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
        }
    }

    std::size_t below(std::size_t limit)
    {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::size_t>(state_ >> 33U) % limit;
    }

private:
    std::uint64_t state_ = 0xCBF29CE484222325U;
};

/// The cards of one file, read as the book should read them.
struct Reading {
    FileEncoding encoding = FileEncoding::Bytes;
    std::string text;
    CardReader reader;
    CardReader::Cards cards;

    explicit Reading(std::string_view bytes) : encoding(dunmora::detectEncoding(bytes)), text(bytes)
    {
        if (encoding != FileEncoding::Bytes) {
            text = dunmora::utf16ToUtf8(bytes, encoding);
        }
        reader.read(text,
                    encoding == FileEncoding::Bytes ? CardReader::Text::Bytes
                                                    : CardReader::Text::Utf8,
                    cards);
    }

    /// The text of a card without the line end.
    std::string_view textOf(std::size_t card) const
    {
        const auto& range = cards.ranges[card];
        return std::string_view(text).substr(range.begin,
                                             range.end - range.begin - range.lineEndSize);
    }

    /// The number of bytes before this position of the text.
    std::size_t byteAt(std::size_t position) const
    {
        return encoding == FileEncoding::Bytes
                   ? position
                   : dunmora::utf16Size(std::string_view(text).substr(0, position));
    }
};

/// A file of the book, with the numbers of the rounds in which its people are removed; 0 is never.
struct File {
    std::filesystem::path path;
    std::string bytes;
    std::unique_ptr<const Reading> reading;
    std::vector<std::size_t> rounds;

    File(std::filesystem::path name, std::string content)
        : path(std::move(name)),
          bytes(std::move(content)),
          reading(std::make_unique<const Reading>(bytes))
    {
    }

    /// The bytes that must remain after the round.
    std::string bytesAfter(std::size_t round) const
    {
        std::string rest;
        std::size_t position = 0;
        for (std::size_t i = 0; i < rounds.size(); ++i) {
            if (rounds[i] != 0 && rounds[i] <= round) {
                const auto begin = reading->byteAt(reading->cards.ranges[i].begin);
                rest += bytes.substr(position, begin - position);
                position = reading->byteAt(reading->cards.ranges[i].end);
            }
        }
        return rest + bytes.substr(position);
    }

    /// Whether the bytes that remain after the round are read as the same cards.
    bool staysReadableAfter(std::size_t round) const
    {
        const Reading after(bytesAfter(round));
        std::size_t next = 0;
        for (std::size_t i = 0; i < rounds.size(); ++i) {
            if (rounds[i] != 0 && rounds[i] <= round) {
                continue;
            }
            if (next == after.cards.people.size() || after.textOf(next) != reading->textOf(i) ||
                !haveSameFields(after.cards.people[next], reading->cards.people[i])) {
                return false;
            }
            ++next;
        }
        return next == after.cards.people.size();
    }
};

using Files = std::vector<File>;

/// Whether this rest of the file is blank in the file's encoding.
bool isBlank(const File& file, std::string_view rest)
{
    const auto encoding = file.reading->encoding;
    return encoding == FileEncoding::Bytes
               ? dunmora::isBlankContent(rest)
               : rest.size() % 2 == 0 &&
                     dunmora::isBlankContent(dunmora::utf16ToUtf8(rest, encoding));
}

/// Checks the files after a round; those of a folder are deleted when nothing remains in them.
void requireContents(const Files& files, std::size_t round)
{
    std::size_t found = 0;
    for (const auto& file : files) {
        const auto expected = file.bytesAfter(round);
        if (std::filesystem::exists(file.path)) {
            ++found;
            require(contentOf(file.path) == expected, "the rest of a file is not as it was");
        } else {
            require(files.size() > 1 && expected != file.bytes && isBlank(file, expected),
                    "a file with content was deleted");
        }
    }
    const std::filesystem::directory_iterator entries(files.front().path.parent_path());
    require(static_cast<std::size_t>(std::distance(begin(entries), end(entries))) == found,
            "a temporary file was left behind");
}

/// Checks that the book holds the people who remain after the round.
void requirePeople(const Files& files, std::span<const dunmora::Person> people, std::size_t round)
{
    std::vector<std::string_view> uids;
    std::size_t next = 0;
    for (const auto& file : files) {
        for (std::size_t i = 0; i < file.rounds.size(); ++i) {
            if (file.rounds[i] != 0 && file.rounds[i] <= round) {
                continue;
            }
            require(next < people.size(), "a person is missing");
            require(haveSameFields(people[next], file.reading->cards.people[i]),
                    "a person has changed");
            require(hasOnlyUtf8(people[next]), "a text is not UTF-8");
            uids.push_back(people[next].uid);
            ++next;
        }
    }
    require(next == people.size(), "there are other people");
    std::sort(uids.begin(), uids.end());
    require(uids.empty() || !uids.front().empty(), "a person has no id");
    require(std::adjacent_find(uids.begin(), uids.end()) == uids.end(), "two people have one id");
}

/// Reads the book and checks its people. Returns false when it is a file that is refused, which
/// only one without a card is.
bool read(const Files& files, VCardAddressBook& book, std::size_t round)
{
    std::span<const dunmora::Person> people;
    try {
        people = book.readPeople();
    } catch (const dunmora::PlatformError&) {
        const auto rest = files.front().bytesAfter(round);
        const Reading reading(rest);
        require(files.size() == 1 && reading.cards.people.empty() && reading.cards.groups.empty() &&
                    reading.cards.skipped.empty() && !isBlank(files.front(), rest),
                "a book was refused");
        return false;
    }
    requirePeople(files, people, round);
    return true;
}

/// Removes the people of this round. Returns false when the book refuses that.
bool remove(const Files& files, VCardAddressBook& book, std::size_t round)
{
    const auto people = book.people();
    std::size_t next = 0;
    for (const auto& file : files) {
        for (const auto ofPerson : file.rounds) {
            if (ofPerson == round) {
                book.removeRecord(people[next]);
            }
            next += ofPerson == 0 || ofPerson >= round ? 1 : 0;
        }
    }
    try {
        book.save();
    } catch (const dunmora::PlatformError&) {
        return false;
    }
    return true;
}

/// Undoes the removal of the people of this round.
void undo(const Files& files, VCardAddressBook& book, std::size_t round)
{
    std::size_t people = 0;
    for (const auto& file : files) {
        people +=
            static_cast<std::size_t>(std::count(file.rounds.begin(), file.rounds.end(), round));
    }
    if (people == 0) {
        return;
    }
    require(book.lastRemoved() == people, "the book remembers other people");
    require(book.restoreLast().restored == people, "an undo did not restore everybody");
}

/// A book of one file or, less often, of a folder with two; some of its people will be removed.
Files filesOf(const std::string& input, const std::filesystem::path& folder, Choices& choices)
{
    Files files;
    if (choices.below(4) == 0) {
        const auto half = choices.below(input.size() + 1);
        files.emplace_back(folder / "a.vcf", input.substr(0, half));
        files.emplace_back(folder / "b.vcf", input.substr(half));
    } else {
        files.emplace_back(folder / "a.vcf", input);
    }
    // The chance of each person to be removed, in percent.
    const std::array<std::size_t, 3> chances{10, 50, 100};
    const auto chance = chances[choices.below(chances.size())];
    for (auto& file : files) {
        dunmora::test::write(file.path, file.bytes);
        for (std::size_t i = 0; i < file.reading->cards.people.size(); ++i) {
            const bool isRemoved = choices.below(100) < chance;
            file.rounds.push_back(isRemoved ? 1 + choices.below(2) : 0);
        }
    }
    return files;
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer calls it by this name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TemporaryFolder root;
    const auto folder = root.path() / "book";
    std::filesystem::create_directory(folder);
    const std::string input(data, data + size);
    Choices choices(input);
    const auto files = filesOf(input, folder, choices);
    const auto path = files.size() > 1 ? folder : files.front().path;

    VCardAddressBook book(path);
    if (!read(files, book, 0)) {
        std::filesystem::remove_all(folder);
        return 0;
    }
    std::size_t done = 0;
    for (std::size_t round = 1; round <= 2; ++round) {
        const bool staysReadable = std::all_of(files.begin(), files.end(), [&](const File& file) {
            return file.staysReadableAfter(round);
        });
        if (!remove(files, book, round)) {
            require(!staysReadable, "a deletion was refused");
            requireContents(files, round - 1);
            break;
        }
        require(staysReadable, "a deletion changed how the others are read");
        requireContents(files, round);
        requirePeople(files, book.people(), round);
        VCardAddressBook again(path);
        read(files, again, round);
        done = round;
    }
    for (; done > 0; --done) {
        undo(files, book, done);
        requireContents(files, done - 1);
        requirePeople(files, book.people(), done - 1);
    }
    std::filesystem::remove_all(folder);
    return 0;
}
