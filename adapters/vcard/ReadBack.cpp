#include "adapters/vcard/ReadBack.h"

#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardReader.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

bool samePhones(const PhoneList& a, const PhoneList& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const LabelledPhone& one, const LabelledPhone& other) {
                          return one.label == other.label && one.value == other.value;
                      });
}

bool sameFields(const Person& a, const Person& b)
{
    return a.firstName == b.firstName && a.lastName == b.lastName && a.nickname == b.nickname &&
           a.modified == b.modified && a.phones.has_value() == b.phones.has_value() &&
           samePhones(a.phones.value_or(PhoneList()), b.phones.value_or(PhoneList()));
}

bool holdsExactly(const std::filesystem::path& name, FileBytes content,
                  const std::vector<RemainingCard>& expected)
{
    const CardFile file(name, std::move(content));
    CardReader reader;
    CardReader::Cards cards;
    file.read(reader, cards);
    if (cards.people.size() != expected.size()) {
        return false;
    }
    CardBytesFinder finder(file);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto [range, lineEndSize] = finder.bytesOf(cards.ranges[i]);
        const auto size = range.end - range.begin - lineEndSize;
        if (file.bytes().substr(range.begin, size) != expected[i].bytes ||
            !sameFields(cards.people[i], *expected[i].person)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool consistsOf(std::string_view content, const Pieces& pieces)
{
    for (const auto piece : pieces) {
        if (!content.starts_with(piece)) {
            return false;
        }
        content.remove_prefix(piece.size());
    }
    return content.empty();
}

bool isReadBack(const std::filesystem::path& name, FileBytes content, const Pieces& written,
                const std::vector<RemainingCard>& expected)
{
    return consistsOf(content.view(), written) && holdsExactly(name, std::move(content), expected);
}

void checkReadBack(const std::filesystem::path& name, FileBytes content, const Pieces& written,
                   const std::vector<RemainingCard>& expected)
{
    if (!consistsOf(content.view(), written)) {
        throw PlatformError(quotedPath(name) + " was not changed: its new content could not be "
                                               "read back as it was written. Nobody was deleted.");
    }
    if (!holdsExactly(name, std::move(content), expected)) {
        throw PlatformError(
            quotedPath(name) +
            " was not changed: without the people to be deleted, others in it would be read "
            "differently. Nobody was deleted. Correct the skipped cards in it, or uncheck the "
            "people next to them.");
    }
}

}  // namespace dunmora
