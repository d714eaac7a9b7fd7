#include "adapters/http/HttpAnswerReader.h"

#include "platform/PlatformError.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

// Far beyond the head of any answer, and the framing of a body in all but the smallest chunks.
constexpr std::size_t kMostFraming = std::size_t{1} << 20U;
constexpr std::string_view kBlanks = " \t";

[[noreturn]] void refuse()
{
    throw PlatformError("The server's answer cannot be understood.");
}

std::string_view trimmed(std::string_view text)
{
    const auto begin = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

std::string lowerCase(std::string_view text)
{
    std::string lower(text);
    for (auto& c : lower) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return lower;
}

/// The value of a field, which may be there several times; empty where it says nothing. Two truths
/// about where the body ends or where to go are none.
std::string onlyValue(const std::vector<std::string>& values)
{
    std::string_view only;
    for (const auto& value : values) {
        const auto said = trimmed(value);
        if (!only.empty() && !said.empty() && said != only) {
            refuse();
        }
        only = only.empty() ? said : only;
    }
    return std::string(only);
}

/// Whether answers of this status are redirects (RFC 9110, section 15.4).
bool sendsElsewhere(int status)
{
    switch (status) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
        return true;
    default:
        return false;
    }
}

/// The number that the whole text is, without a sign.
std::uint64_t number(std::string_view text, int base)
{
    std::uint64_t value = 0;
    const auto* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, base);
    if (result.ec != std::errc() || result.ptr != end) {
        refuse();
    }
    return value;
}

}  // namespace

void HttpAnswerReader::take(std::string_view bytes)
{
    while (!bytes.empty() && !isComplete()) {
        bytes = takesBytes() ? takeBytes(bytes) : takeLine(bytes);
    }
}

void HttpAnswerReader::takeEnd()
{
    if (part_ == Part::BodyUntilTheEnd) {
        part_ = Part::Complete;
    }
    if (!isComplete()) {
        throw PlatformError("The server closed the connection too early.");
    }
}

std::string HttpAnswerReader::takeBody()
{
    return std::exchange(body_, {});
}

bool HttpAnswerReader::takesBytes() const
{
    return part_ == Part::CountedBody || part_ == Part::Chunk || part_ == Part::BodyUntilTheEnd;
}

std::string_view HttpAnswerReader::takeBytes(std::string_view bytes)
{
    if (part_ == Part::BodyUntilTheEnd) {
        body_ += bytes;
        return {};
    }
    const auto size = std::min<std::uint64_t>(missing_, bytes.size());
    body_ += bytes.substr(0, size);
    missing_ -= size;
    if (missing_ == 0) {
        part_ = part_ == Part::Chunk ? Part::ChunkEnd : Part::Complete;
    }
    return bytes.substr(size);
}

std::string_view HttpAnswerReader::takeLine(std::string_view bytes)
{
    const auto end = bytes.find('\n');
    const auto size = std::min(end, bytes.size());
    framing_ += size + 1;
    if (framing_ > kMostFraming) {
        throw PlatformError("The server's answer is too long.");
    }
    line_ += bytes.substr(0, size);
    if (end == std::string_view::npos) {
        return {};
    }
    if (line_.ends_with('\r')) {
        line_.pop_back();
    }
    readLine(std::exchange(line_, {}));
    return bytes.substr(end + 1);
}

void HttpAnswerReader::readLine(std::string_view line)
{
    switch (part_) {
    case Part::StatusLine:
        readStatusLine(line);
        break;
    case Part::Fields:
        if (line.empty()) {
            beginBody();
        } else {
            readField(line);
        }
        break;
    case Part::ChunkSize:
        readChunkSize(line);
        break;
    case Part::ChunkEnd:
        if (!line.empty()) {
            refuse();
        }
        part_ = Part::ChunkSize;
        break;
    case Part::Trailer:
        if (line.empty()) {
            part_ = Part::Complete;
        }
        break;
    case Part::CountedBody:
    case Part::Chunk:
    case Part::BodyUntilTheEnd:
    case Part::Complete:
        break;
    }
}

void HttpAnswerReader::readStatusLine(std::string_view line)
{
    constexpr std::string_view kVersion = "HTTP/1.";
    constexpr std::size_t kStatus = kVersion.size() + 2;
    constexpr std::size_t kEnd = kStatus + 3;
    if (!line.starts_with(kVersion) || line.size() < kEnd || line[kStatus - 1] != ' ' ||
        (line.size() > kEnd && line[kEnd] != ' ')) {
        refuse();
    }
    status_ = static_cast<int>(number(line.substr(kStatus, kEnd - kStatus), 10));
    fields_ = {};
    part_ = Part::Fields;
}

void HttpAnswerReader::readField(std::string_view line)
{
    if (kBlanks.find(line.front()) != std::string_view::npos) {
        if (fields_.last != nullptr) {
            fields_.last->back().append(" ").append(trimmed(line));
        }
        return;
    }
    const auto colon = line.find(':');
    const auto name = lowerCase(line.substr(0, colon));
    fields_.last = colon == std::string_view::npos ? nullptr
                   : name == "location"            ? &fields_.location
                   : name == "content-length"      ? &fields_.contentLength
                   : name == "transfer-encoding"   ? &fields_.transferEncoding
                                                   : nullptr;
    if (fields_.last != nullptr) {
        fields_.last->emplace_back(line.substr(colon + 1));
    }
}

/// RFC 9112, section 6.3.
void HttpAnswerReader::beginBody()
{
    constexpr int kFirstFinalStatus = 200;
    constexpr int kNoContent = 204;
    constexpr int kNotModified = 304;
    if (status_ < kFirstFinalStatus) {
        part_ = Part::StatusLine;
        return;
    }
    head_ = HttpHead{status_, sendsElsewhere(status_) ? onlyValue(fields_.location) : ""};
    if (status_ == kNoContent || status_ == kNotModified) {
        part_ = Part::Complete;
    } else if (const auto coding = onlyValue(fields_.transferEncoding); !coding.empty()) {
        if (lowerCase(coding) != "chunked") {
            refuse();
        }
        part_ = Part::ChunkSize;
    } else if (const auto length = onlyValue(fields_.contentLength); !length.empty()) {
        missing_ = number(length, 10);
        part_ = missing_ == 0 ? Part::Complete : Part::CountedBody;
    } else {
        part_ = Part::BodyUntilTheEnd;
    }
}

void HttpAnswerReader::readChunkSize(std::string_view line)
{
    missing_ = number(trimmed(line.substr(0, line.find(';'))), 16);
    part_ = missing_ == 0 ? Part::Trailer : Part::Chunk;
}

}  // namespace dunmora
