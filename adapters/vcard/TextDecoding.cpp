#include "adapters/vcard/TextDecoding.h"

#include "text/Ascii.h"
#include "text/Utf8.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

namespace dunmora {

namespace {

// Windows-1252 from 0x80 to 0x9F; its five unassigned positions are read as C1 control characters.
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

void appendWindows1252(std::string& text, unsigned byte)
{
    appendUtf8(text, byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : byte);
}

std::string repairUtf8(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        if (const auto character = utf8CharacterAt(bytes, i); character.isValid) {
            text.append(bytes, i, character.size);
            i += character.size;
        } else {
            appendWindows1252(text, byteAt(bytes, i));
            ++i;
        }
    }
    return text;
}

/// A conversion to UTF-8 by the C library's iconv.
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
            std::size_t free = buffer.size();
            const auto result = iconv(handle_, &in, &left, &out, &free);
            const int error = errno;
            text.append(buffer.data(), buffer.size() - free);
            if (result == static_cast<std::size_t>(-1) && error != E2BIG) {
                flush(text);
                appendWindows1252(text, static_cast<unsigned char>(*in));
                ++in;
                --left;
            }
        }
        flush(text);
        // Some converters return surrogates or numbers beyond U+10FFFF.
        return isUtf8(text) ? text : repairUtf8(text);
    }

private:
    /// Appends the character that a converter of a charset with combining marks holds back, and
    /// resets the converter.
    void flush(std::string& text)
    {
        std::array<char, 64> buffer{};
        char* out = buffer.data();
        std::size_t free = buffer.size();
        iconv(handle_, nullptr, nullptr, &out, &free);
        text.append(buffer.data(), buffer.size() - free);
    }

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

/// Whether the text can name a charset. A suffix such as "//IGNORE" would make iconv drop
/// characters.
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

// What a character is that is no digit of base64: bits that the value of a digit does not have.
constexpr std::uint8_t kBase64Blank = 0x40;
constexpr std::uint8_t kBase64Padding = 0x80;
constexpr std::uint8_t kNotBase64 = kBase64Blank | kBase64Padding;

/// By character: the value of the digit, or one of the above.
constexpr auto kBase64Values = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(kNotBase64);
    std::uint8_t digit = 0;
    for (const char c :
         std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")) {
        values[static_cast<unsigned char>(c)] = digit++;
    }
    for (const char c : std::string_view(" \t\r\n")) {
        values[static_cast<unsigned char>(c)] = kBase64Blank;
    }
    values['='] = kBase64Padding;
    return values;
}();

std::uint32_t base64ValueAt(std::string_view text, std::size_t position)
{
    return kBase64Values[byteAt(text, position)];
}

/// Decodes digits, four at a time, up to the first four characters of which one is no digit.
/// Returns how many characters it has decoded. `bytes` must have room for three bytes for each
/// four characters.
std::size_t decodeWholeBase64(std::string_view text, char* bytes)
{
    std::size_t position = 0;
    for (; position + 4 <= text.size(); position += 4) {
        const auto first = base64ValueAt(text, position);
        const auto second = base64ValueAt(text, position + 1);
        const auto third = base64ValueAt(text, position + 2);
        const auto fourth = base64ValueAt(text, position + 3);
        if (((first | second | third | fourth) & kNotBase64) != 0) {
            break;
        }
        const auto bits = first << 18U | second << 12U | third << 6U | fourth;
        *bytes++ = static_cast<char>(bits >> 16U);
        *bytes++ = static_cast<char>(bits >> 8U & 0xFFU);
        *bytes++ = static_cast<char>(bits & 0xFFU);
    }
    return position;
}

std::uint32_t utf16Unit(std::string_view bytes, std::size_t position, FileEncoding encoding)
{
    const auto first = byteAt(bytes, position);
    const auto second = byteAt(bytes, position + 1);
    return encoding == FileEncoding::Utf16BigEndian ? first << 8U | second : second << 8U | first;
}

/// Whether the UTF-16 text, apart from white space, begins with BEGIN.
bool beginsCard(std::string_view bytes, FileEncoding encoding)
{
    constexpr std::string_view kBegin = "BEGIN";
    std::size_t matched = 0;
    for (std::size_t i = 0; matched < kBegin.size() && i + 1 < bytes.size(); i += 2) {
        const auto unit = utf16Unit(bytes, i, encoding);
        const char c = unit < 0x80 ? static_cast<char>(unit) : '\0';
        if (toUpperAscii(c) == kBegin[matched]) {
            ++matched;
        } else if (matched > 0 || kWhiteSpace.find(c) == std::string_view::npos) {
            return false;
        }
    }
    return matched == kBegin.size();
}

}  // namespace

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
    std::string bytes(text.size() / 4 * 3 + 3, '\0');
    std::size_t size = 0;
    std::uint32_t bits = 0;
    int bitCount = 0;
    bool ended = false;
    for (std::size_t position = 0; position < text.size(); ++position) {
        if (bitCount == 0 && !ended) {
            const auto decoded = decodeWholeBase64(text.substr(position), bytes.data() + size);
            size += decoded / 4 * 3;
            position += decoded;
            if (position == text.size()) {
                break;
            }
        }
        const auto value = base64ValueAt(text, position);
        if (value == kBase64Blank) {
            continue;
        }
        if (value == kBase64Padding) {
            ended = true;
            continue;
        }
        if (value == kNotBase64 || ended) {
            return std::nullopt;
        }
        bits = bits << 6U | value;
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            bytes[size++] = static_cast<char>(bits >> static_cast<unsigned>(bitCount) & 0xFFU);
        }
    }
    bytes.resize(size);
    return bytes;
}

FileEncoding detectEncoding(std::string_view bytes)
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
    for (const auto encoding : {FileEncoding::Utf16LittleEndian, FileEncoding::Utf16BigEndian}) {
        if (beginsCard(bytes, encoding)) {
            return encoding;
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

std::string utf8ToUtf16(std::string_view text, FileEncoding encoding)
{
    std::string bytes;
    bytes.reserve(2 * text.size());
    const auto append = [&](char32_t unit) {
        const auto high = static_cast<char>(unit >> 8U);
        const auto low = static_cast<char>(unit & 0xFFU);
        bytes += encoding == FileEncoding::Utf16BigEndian ? high : low;
        bytes += encoding == FileEncoding::Utf16BigEndian ? low : high;
    };
    for (std::size_t i = 0; i < text.size();) {
        const auto character = utf8CharacterAt(text, i);
        i += character.size;
        if (character.codePoint < 0x10000) {
            append(character.codePoint);
        } else {
            const auto rest = character.codePoint - 0x10000;
            append(0xD800 + (rest >> 10U));
            append(0xDC00 + (rest & 0x3FFU));
        }
    }
    return bytes;
}

std::string lineEndIn(FileEncoding encoding)
{
    using namespace std::string_literals;
    switch (encoding) {
    case FileEncoding::Utf16LittleEndian:
        return "\r\0\n\0"s;
    case FileEncoding::Utf16BigEndian:
        return "\0\r\0\n"s;
    case FileEncoding::Bytes:
        break;
    }
    return "\r\n";
}

std::string byteOrderMarkOf(FileEncoding encoding)
{
    switch (encoding) {
    case FileEncoding::Utf16LittleEndian:
        return "\xFF\xFE";
    case FileEncoding::Utf16BigEndian:
        return "\xFE\xFF";
    case FileEncoding::Bytes:
        break;
    }
    return {};
}

std::size_t utf16Size(std::string_view utf8)
{
    std::size_t units = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        // A character of four bytes is a pair of units, every other character one unit.
        units += isContinuation(byte) ? 0 : (byte >= 0xF0 ? 2 : 1);
    }
    return 2 * units;
}

}  // namespace dunmora
