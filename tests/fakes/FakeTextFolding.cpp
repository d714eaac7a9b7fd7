#include "tests/fakes/FakeTextFolding.h"

#include "text/Ascii.h"
#include "text/Utf8.h"

namespace dunmora::test {

namespace {

constexpr std::string_view kCombiningDiaeresis = "\xCC\x88";
constexpr std::string_view kSmallEWithDiaeresis = "\xC3\xAB";
constexpr char kLatin1Letters = '\xC3';

}  // namespace

std::string FakeTextFolding::folded(std::string_view utf8) const
{
    std::string folded;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isLatin1Capital =
            folded.ends_with(kLatin1Letters) && byte >= 0x80 && byte <= 0x9E && byte != 0x97;
        folded += isLatin1Capital ? static_cast<char>(c + 0x20) : toLowerAscii(c);
        if (folded.ends_with("e" + std::string(kCombiningDiaeresis))) {
            folded.replace(folded.size() - 1 - kCombiningDiaeresis.size(), std::string::npos,
                           kSmallEWithDiaeresis);
        }
    }
    return folded;
}

std::string FakeTextFolding::digits(std::string_view utf8) const
{
    constexpr char32_t kArabicZero = 0x0660;
    std::string digits;
    for (std::size_t position = 0; position < utf8.size();) {
        const auto [c, size, isValid] = utf8CharacterAt(utf8, position);
        if (c >= '0' && c <= '9') {
            digits += static_cast<char>(c);
        } else if (c >= kArabicZero && c < kArabicZero + 10) {
            digits += static_cast<char>('0' + (c - kArabicZero));
        }
        position += size;
    }
    return digits;
}

}  // namespace dunmora::test
