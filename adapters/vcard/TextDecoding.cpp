#include "adapters/vcard/TextDecoding.h"

#include "adapters/vcard/Ascii.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace dunmora {

namespace {

// What Windows-1252 has at 0x80 to 0x9F; the five places that it leaves free are the C1 control
// characters, as everybody reads them.
constexpr std::array<char32_t, 32> kWindows1252{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

unsigned byteAt(std::string_view bytes, std::size_t position)
{
    return static_cast<unsigned char>(bytes[position]);
}

bool isContinuation(unsigned byte)
{
    return (byte & 0xC0U) == 0x80U;
}

/// How many bytes the UTF-8 character at `position` has; 0 when there is none.
std::size_t utf8Length(std::string_view bytes, std::size_t position)
{
    const auto left = bytes.size() - position;
    const auto first = byteAt(bytes, position);
    if (first < 0x80) {
        return 1;
    }
    const auto second = left > 1 ? byteAt(bytes, position + 1) : 0;
    const auto third = left > 2 ? byteAt(bytes, position + 2) : 0;
    const auto fourth = left > 3 ? byteAt(bytes, position + 3) : 0;
    if (first >= 0xC2 && first <= 0xDF) {
        return isContinuation(second) ? 2 : 0;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        // Neither longer than needed nor half of a surrogate pair.
        const bool inRange = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second < 0xA0);
        return inRange && isContinuation(second) && isContinuation(third) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool inRange = (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second < 0x90);
        return inRange && isContinuation(second) && isContinuation(third) && isContinuation(fourth)
                   ? 4
                   : 0;
    }
    return 0;
}

void appendUtf8(std::string& text, char32_t character)
{
    const auto put = [&](char32_t bits) { text += static_cast<char>(bits); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | character >> 6U);
        put(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        put(0xE0U | character >> 12U);
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    } else {
        put(0xF0U | character >> 18U);
        put(0x80U | (character >> 12U & 0x3FU));
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    }
}

void appendWindows1252(std::string& text, unsigned byte)
{
    appendUtf8(text, byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : byte);
}

std::string repairUtf8(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        if (const auto length = utf8Length(bytes, i); length > 0) {
            text.append(bytes, i, length);
            i += length;
        } else {
            appendWindows1252(text, byteAt(bytes, i));
            ++i;
        }
    }
    return text;
}

/// A converter of the C library to UTF-8, for as long as it lives.
class Converter final {
public:
    explicit Converter(const std::string& charset) : handle_(iconv_open("UTF-8", charset.c_str()))
    {
    }
    ~Converter()
    {
        if (isKnown()) {
            iconv_close(handle_);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isKnown() const
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): POSIX defines failure as this value.
        return handle_ != reinterpret_cast<iconv_t>(-1);
    }

    std::string convert(std::string_view bytes)
    {
        std::string input(bytes);
        std::string text;
        char* in = input.data();
        std::size_t left = input.size();
        while (left > 0) {
            std::array<char, 256> buffer{};
            char* out = buffer.data();
            std::size_t room = buffer.size();
            const auto result = iconv(handle_, &in, &left, &out, &room);
            const int error = errno;
            text.append(buffer.data(), buffer.size() - room);
            if (result == static_cast<std::size_t>(-1) && error != E2BIG) {
                appendWindows1252(text, static_cast<unsigned char>(*in));
                ++in;
                --left;
                iconv(handle_, nullptr, nullptr, nullptr, nullptr);
            }
        }
        return text;
    }

private:
    iconv_t handle_;
};

bool isUtf8Name(std::string_view charset)
{
    std::string name;
    for (const char c : charset) {
        if (c != '-' && c != '_') {
            name += toUpperAscii(c);
        }
    }
    return name.empty() || name == "UTF8" || name == "USASCII" || name == "ASCII";
}

/// Whether the name is one for a charset; "//" would switch the converter to dropping what it does
/// not know.
bool isCharsetName(std::string_view charset)
{
    return charset.size() < 64 && std::all_of(charset.begin(), charset.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                      c == '-' || c == '_' || c == '.' || c == ':' || c == '+';
           });
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

int base64Digit(char c)
{
    if (c >= 'A' && c <= 'Z') {
        return c - 'A';
    }
    if (c >= 'a' && c <= 'z') {
        return c - 'a' + 26;
    }
    if (c >= '0' && c <= '9') {
        return c - '0' + 52;
    }
    if (c == '+') {
        return 62;
    }
    return c == '/' ? 63 : -1;
}

std::uint32_t utf16Unit(std::string_view bytes, std::size_t position, FileEncoding encoding)
{
    const auto first = byteAt(bytes, position);
    const auto second = byteAt(bytes, position + 1);
    return encoding == FileEncoding::Utf16BigEndian ? first << 8U | second : second << 8U | first;
}

}  // namespace

bool isUtf8(std::string_view bytes)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    for (std::size_t i = 0; i < bytes.size();) {
        std::uint64_t word = 0;
        if (bytes.size() - i >= sizeof word) {
            std::memcpy(&word, bytes.data() + i, sizeof word);
            if ((word & kHighBits) == 0) {
                i += sizeof word;
                continue;
            }
        }
        const auto length = utf8Length(bytes, i);
        if (length == 0) {
            return false;
        }
        i += length;
    }
    return true;
}

std::string toUtf8(std::string_view bytes, std::string_view charset)
{
    if (!isUtf8Name(charset) && isCharsetName(charset)) {
        Converter converter{std::string(charset)};
        if (converter.isKnown()) {
            return converter.convert(bytes);
        }
    }
    return repairUtf8(bytes);
}

std::string decodeQuotedPrintable(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '=' && i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? hexDigit(text[i + 2]) : -1;
        if (low >= 0) {
            bytes += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::optional<std::string> decodeBase64(std::string_view text)
{
    std::string bytes;
    std::uint32_t bits = 0;
    int bitCount = 0;
    bool ended = false;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            continue;
        }
        if (c == '=') {
            ended = true;
            continue;
        }
        const int digit = base64Digit(c);
        if (digit < 0 || ended) {
            return std::nullopt;
        }
        bits = bits << 6U | static_cast<std::uint32_t>(digit);
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            bytes += static_cast<char>(bits >> static_cast<unsigned>(bitCount) & 0xFFU);
        }
    }
    return bytes;
}

FileEncoding encodingOf(std::string_view bytes)
{
    if (bytes.size() < 2) {
        return FileEncoding::Bytes;
    }
    const auto mark = bytes.substr(0, 2);
    if (mark == "\xFF\xFE") {
        return FileEncoding::Utf16LittleEndian;
    }
    if (mark == "\xFE\xFF") {
        return FileEncoding::Utf16BigEndian;
    }
    if (bytes.size() >= 4) {
        const auto isZero = [&](std::size_t position) { return bytes[position] == '\0'; };
        if (isZero(0) && !isZero(1) && isZero(2) && !isZero(3)) {
            return FileEncoding::Utf16BigEndian;
        }
        if (!isZero(0) && isZero(1) && !isZero(2) && isZero(3)) {
            return FileEncoding::Utf16LittleEndian;
        }
    }
    return FileEncoding::Bytes;
}

std::string utf16ToUtf8(std::string_view bytes, FileEncoding encoding)
{
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto unit = utf16Unit(bytes, i, encoding);
        const bool isHigh = unit >= 0xD800 && unit < 0xDC00;
        const auto next = isHigh && i + 3 < bytes.size() ? utf16Unit(bytes, i + 2, encoding) : 0;
        if (next >= 0xDC00 && next < 0xE000) {
            appendUtf8(text, 0x10000 + ((unit - 0xD800) << 10U) + (next - 0xDC00));
            i += 2;
        } else {
            appendUtf8(text, unit >= 0xD800 && unit < 0xE000 ? 0xFFFD : unit);
        }
    }
    return text;
}

std::size_t utf16Size(std::string_view utf8)
{
    std::size_t units = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        // A character of four bytes is a pair of units; each other one begins with one byte that
        // is no continuation.
        units += isContinuation(byte) ? 0 : (byte >= 0xF0 ? 2 : 1);
    }
    return 2 * units;
}

}  // namespace dunmora
