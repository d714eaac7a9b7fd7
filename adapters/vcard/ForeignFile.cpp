#include "adapters/vcard/ForeignFile.h"

#include "adapters/vcard/AddedCards.h"
#include "adapters/vcard/Lines.h"
#include "adapters/vcard/TextDecoding.h"
#include "platform/PlatformError.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace dunmora {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Enough to recognize a file, however large it is. An even number, for UTF-16.
constexpr std::size_t kSampleSize = 64U << 10U;

bool isZip(std::string_view bytes)
{
    // The first entry, the end of an empty archive, and the first part of a split one.
    constexpr std::array<std::string_view, 3> kSignatures = {"PK\3\4", "PK\5\6", "PK\7\x08"};
    return std::any_of(kSignatures.begin(), kSignatures.end(),
                       [&](std::string_view signature) { return bytes.starts_with(signature); });
}

/// UTF-16 without a byte-order mark, which begins with a few ASCII characters.
std::optional<FileEncoding> unmarkedUtf16(std::string_view bytes)
{
    constexpr std::size_t kCharacters = 4;
    if (bytes.size() < 2 * kCharacters) {
        return std::nullopt;
    }
    std::array<std::size_t, 2> zeros{};
    for (std::size_t i = 0; i < 2 * kCharacters; ++i) {
        zeros[i % 2] += bytes[i] == '\0' ? 1 : 0;
    }
    if (zeros[0] == 0 && zeros[1] == kCharacters) {
        return FileEncoding::Utf16LittleEndian;
    }
    return zeros[0] == kCharacters && zeros[1] == 0 ? std::optional(FileEncoding::Utf16BigEndian)
                                                    : std::nullopt;
}

/// The sample as UTF-8, or another superset of ASCII, without a byte-order mark.
std::string textOf(std::string_view sample)
{
    auto encoding = detectEncoding(sample);
    if (encoding == FileEncoding::Bytes) {
        encoding = unmarkedUtf16(sample).value_or(encoding);
    }
    auto text =
        encoding == FileEncoding::Bytes ? std::string(sample) : utf16ToUtf8(sample, encoding);
    if (text.starts_with(kByteOrderMark)) {
        text.erase(0, kByteOrderMark.size());
    }
    return text;
}

bool startsIgnoringCase(std::string_view text, std::string_view beginning)
{
    return equalsIgnoringCase(text.substr(0, beginning.size()), beginning);
}

/// Whether the first line that is neither blank nor a comment is the version or the name of an
/// entry (RFC 2849).
bool isLdif(std::string_view text)
{
    constexpr std::string_view kVersion = "version:";
    Lines lines(text);
    for (std::size_t position = 0; position < text.size();) {
        const auto line = lines.at(position);
        position = line.next;
        const auto content = text.substr(line.begin, line.end - line.begin);
        if (trimmed(content).empty() || content.starts_with('#')) {
            continue;
        }
        return startsIgnoringCase(content, "dn:") ||
               (startsIgnoringCase(content, kVersion) &&
                trimmed(content.substr(kVersion.size())) == "1");
    }
    return false;
}

/// The number of fields of each of the first records (RFC 4180) with this separator; blank lines
/// are none. A last record that the sample cuts off is not counted, unless it is the only one.
std::vector<std::size_t> fieldsOfRecords(std::string_view text, char separator, bool isWhole)
{
    constexpr std::size_t kMostRecords = 10;
    std::vector<std::size_t> counts;
    std::size_t fields = 1;
    bool isQuoted = false;
    bool isBlankRecord = true;
    const auto endRecord = [&] {
        if (!isBlankRecord) {
            counts.push_back(fields);
        }
        fields = 1;
        isBlankRecord = true;
    };
    for (const char c : text) {
        if (counts.size() == kMostRecords) {
            return counts;
        }
        // A quotation mark in a quoted field is doubled, which ends and begins it.
        isQuoted = isQuoted != (c == '"');
        if (!isQuoted && (c == '\n' || c == '\r')) {
            endRecord();
            continue;
        }
        isBlankRecord = isBlankRecord && isBlank(c);
        fields += !isQuoted && c == separator ? 1 : 0;
    }
    if (isWhole || counts.empty()) {
        endRecord();
    }
    return counts;
}

/// Whether all the first records have the same number of fields. A header alone needs more of them
/// than a sentence is likely to have commas.
bool isSeparatedBy(char separator, std::string_view text, bool isWhole)
{
    const auto counts = fieldsOfRecords(text, separator, isWhole);
    const std::size_t least = counts.size() == 1 ? 3 : 2;
    return !counts.empty() && counts.front() >= least &&
           std::all_of(counts.begin(), counts.end(),
                       [&](std::size_t count) { return count == counts.front(); });
}

bool isCsv(std::string_view text, bool isWhole)
{
    constexpr std::string_view kMarkup = "<{[";
    const bool isText = std::none_of(text.begin(), text.end(), [](char c) {
        return c >= '\0' && c < ' ' && kWhiteSpace.find(c) == std::string_view::npos;
    });
    // Web pages and JSON have commas, too.
    const auto first = text.find_first_not_of(kWhiteSpace);
    if (!isText || first == std::string_view::npos ||
        kMarkup.find(text[first]) != std::string_view::npos) {
        return false;
    }
    // Spreadsheets may name the separator in a line of its own.
    constexpr std::string_view kSeparatorLine = "sep=";
    if (startsIgnoringCase(text, kSeparatorLine)) {
        text.remove_prefix(std::min(text.find('\n'), text.size()));
    }
    return isSeparatedBy(',', text, isWhole) || isSeparatedBy(';', text, isWhole) ||
           isSeparatedBy('\t', text, isWhole);
}

}  // namespace

bool isForeign(const CardFile& file, const CardReader::Cards& cards)
{
    return cards.ranges.empty() && cards.groups.empty() && cards.skipped.empty() &&
           !isBlankContent(file.text());
}

bool isForeign(const CardFile& file)
{
    CardReader reader;
    CardReader::Cards cards;
    file.read(reader, cards);
    return isForeign(file, cards);
}

bool isForeign(const Pieces& content)
{
    std::string bytes;
    bytes.reserve(sizeOf(content));
    for (const auto piece : content) {
        bytes += piece;
    }
    return isForeign(cardFileOf({}, bytes));
}

void checkTakesCards(const CardFile& file, const Remainders& remainders)
{
    if (isForeign(file) && !isRemainder(file, remainders)) {
        throw PlatformError(quotedPath(file.names().front()) + " was not changed: it is " +
                            describeForeign(file.bytes()) + ".");
    }
}

std::string describeForeign(std::string_view bytes)
{
    const auto text = textOf(bytes.substr(0, kSampleSize));
    const bool isWhole = bytes.size() <= kSampleSize;
    const std::string_view kind = isZip(bytes)           ? "a zip archive, "
                                  : isLdif(text)         ? "an LDIF file, "
                                  : isCsv(text, isWhole) ? "a CSV file, "
                                                         : "";
    return std::string(kind) + "not a vCard file";
}

}  // namespace dunmora
