#include "adapters/http/HttpResponseReader.h"

#include "platform/PlatformError.h"
#include "text/Ascii.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

// Far more than any head needs, and enough to frame a chunked body in all but the smallest chunks.
constexpr std::size_t kMaxFramingSize = std::size_t{1} << 20U;

[[noreturn]] void rejectResponse()
{
    throw PlatformError("The server sent a malformed response.");
}

/// Returns the value of a field that may be repeated; empty when it is missing or empty. Rejects
/// values that contradict each other.
std::string onlyValue(const std::vector<std::string>& values)
{
    std::string_view only;
    for (const auto& value : values) {
        const auto text = trimmed(value);
        if (!only.empty() && !text.empty() && text != only) {
            rejectResponse();
        }
        only = only.empty() ? text : only;
    }
    return std::string(only);
}

/// Whether the text has a blank or a control character, which no field name may have (RFC 9110
/// §5.6.2).
bool hasBlankOrControl(std::string_view text)
{
    constexpr unsigned char kDelete = 0x7f;
    return std::any_of(text.begin(), text.end(),
                       [](unsigned char c) { return c <= ' ' || c == kDelete; });
}

/// Whether the status is a redirect (RFC 9110 §15.4).
bool isRedirect(int status)
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

/// Whether the values of Content-Encoding name anything that a recipient would have to decode.
bool isEncoded(const std::vector<std::string>& values)
{
    return std::any_of(values.begin(), values.end(), [](const auto& value) {
        const auto coding = trimmed(value);
        return !coding.empty() && !equalsIgnoringCase(coding, "identity");
    });
}

/// Returns the unsigned number that the whole text represents; rejects any other text.
std::uint64_t number(std::string_view text, int base)
{
    std::uint64_t value = 0;
    const auto* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, base);
    if (result.ec != std::errc() || result.ptr != end) {
        rejectResponse();
    }
    return value;
}

}  // namespace

void HttpResponseReader::receive(std::string_view bytes)
{
    while (!bytes.empty() && !isComplete()) {
        bytes = isInBody() ? readBody(bytes) : readBytesOfLine(bytes);
    }
}

void HttpResponseReader::receiveEnd(Close close)
{
    if (part_ == Part::BodyUntilClose && close == Close::Complete) {
        part_ = Part::Complete;
    }
    if (!isComplete()) {
        throw PlatformError("The server closed the connection before the response was complete.");
    }
}

std::string HttpResponseReader::takeBody()
{
    return std::exchange(body_, {});
}

bool HttpResponseReader::isInBody() const
{
    return part_ == Part::BodyOfKnownLength || part_ == Part::ChunkData ||
           part_ == Part::BodyUntilClose;
}

std::string_view HttpResponseReader::readBody(std::string_view bytes)
{
    if (part_ == Part::BodyUntilClose) {
        body_ += bytes;
        return {};
    }
    const auto size = std::min<std::uint64_t>(missing_, bytes.size());
    body_ += bytes.substr(0, size);
    missing_ -= size;
    if (missing_ == 0) {
        part_ = part_ == Part::ChunkData ? Part::ChunkEnd : Part::Complete;
    }
    return bytes.substr(size);
}

std::string_view HttpResponseReader::readBytesOfLine(std::string_view bytes)
{
    const auto end = bytes.find('\n');
    const bool endsLine = end != std::string_view::npos;
    const auto piece = bytes.substr(0, endsLine ? end + 1 : end);
    framingSize_ += piece.size();
    if (framingSize_ > kMaxFramingSize) {
        throw PlatformError("The server's response is too long.");
    }
    line_ += piece;
    if (!endsLine) {
        return {};
    }
    line_.pop_back();
    if (line_.ends_with('\r')) {
        line_.pop_back();
    }
    readLine(std::exchange(line_, {}));
    return bytes.substr(piece.size());
}

void HttpResponseReader::readLine(std::string_view line)
{
    switch (part_) {
    case Part::StatusLine:
        readStatusLine(line);
        break;
    case Part::HeaderFields:
        if (line.empty()) {
            beginBody();
        } else {
            readHeaderField(line);
        }
        break;
    case Part::ChunkSize:
        readChunkSize(line);
        break;
    case Part::ChunkEnd:
        if (!line.empty()) {
            rejectResponse();
        }
        part_ = Part::ChunkSize;
        break;
    case Part::TrailerSection:
        if (line.empty()) {
            part_ = Part::Complete;
        }
        break;
    case Part::BodyOfKnownLength:
    case Part::ChunkData:
    case Part::BodyUntilClose:
    case Part::Complete:
        break;
    }
}

void HttpResponseReader::readStatusLine(std::string_view line)
{
    constexpr std::string_view kVersion = "HTTP/1.";
    constexpr std::size_t kStatus = kVersion.size() + 2;
    constexpr std::size_t kEnd = kStatus + 3;
    if (!line.starts_with(kVersion) || line.size() < kEnd || line[kStatus - 1] != ' ' ||
        (line.size() > kEnd && line[kEnd] != ' ')) {
        rejectResponse();
    }
    status_ = static_cast<int>(number(line.substr(kStatus, kEnd - kStatus), 10));
    fields_ = {};
    part_ = Part::HeaderFields;
}

void HttpResponseReader::readHeaderField(std::string_view line)
{
    if (isBlank(line.front())) {
        if (fields_.last != nullptr) {
            (fields_.*fields_.last).back().append(" ").append(trimmed(line));
        }
        return;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) {
        fields_.last = nullptr;
        return;
    }
    const auto name = line.substr(0, colon);
    // A client that trims the name and one that does not would disagree on where the body ends.
    if (hasBlankOrControl(name)) {
        rejectResponse();
    }
    const auto is = [&](std::string_view known) { return equalsIgnoringCase(name, known); };
    fields_.last = is("location")            ? &HeaderFields::location
                   : is("content-encoding")  ? &HeaderFields::contentEncoding
                   : is("content-length")    ? &HeaderFields::contentLength
                   : is("transfer-encoding") ? &HeaderFields::transferEncoding
                                             : nullptr;
    if (fields_.last != nullptr) {
        (fields_.*fields_.last).emplace_back(line.substr(colon + 1));
    }
}

/// Finds out how the body ends (RFC 9112 §6.3).
void HttpResponseReader::beginBody()
{
    constexpr int kFirstFinalStatus = 200;
    constexpr int kNoContent = 204;
    constexpr int kNotModified = 304;
    if (status_ < kFirstFinalStatus) {
        part_ = Part::StatusLine;
        return;
    }
    head_ = HttpResponseHead{status_, isRedirect(status_) ? onlyValue(fields_.location) : ""};
    if (status_ == kNoContent || status_ == kNotModified) {
        part_ = Part::Complete;
        return;
    }
    // Nobody reads the body of a redirect.
    if (head_->location.empty() && isEncoded(fields_.contentEncoding)) {
        throw PlatformError("The server's response has an encoding that was not requested.");
    }
    if (const auto coding = onlyValue(fields_.transferEncoding); !coding.empty()) {
        if (!equalsIgnoringCase(coding, "chunked")) {
            rejectResponse();
        }
        part_ = Part::ChunkSize;
    } else if (!fields_.contentLength.empty()) {
        missing_ = number(onlyValue(fields_.contentLength), 10);
        part_ = missing_ == 0 ? Part::Complete : Part::BodyOfKnownLength;
    } else {
        part_ = Part::BodyUntilClose;
    }
}

void HttpResponseReader::readChunkSize(std::string_view line)
{
    missing_ = number(trimmed(line.substr(0, line.find(';'))), 16);
    part_ = missing_ == 0 ? Part::TrailerSection : Part::ChunkData;
}

}  // namespace dunmora
