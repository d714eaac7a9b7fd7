#include "programs/dunmora-cli/TerminalText.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

#include "text/Utf8.h"

namespace dunmora {

namespace {

// A lambda, not a function, so that the loops over every byte of every name are inlined.
constexpr auto kIsPlain = [](char c) { return c >= ' ' && c <= '~'; };

/// Characters that a terminal may act upon although they show nothing: the C1 controls, those that
/// turn the writing direction, and the separators of lines and paragraphs.
bool isHiddenControl(char32_t c)
{
    return (c >= 0x80 && c <= 0x9F) || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069) || c == 0x200E || c == 0x200F || c == 0x061C ||
           c == 0x2028 || c == 0x2029;
}

/// The picture of a C0 control or of DEL: U+2400 to U+241F, U+2421.
void appendPicture(std::string& out, char32_t control)
{
    const auto last = control == 0x7F ? 0x21U : static_cast<unsigned>(control);
    out += "\xE2\x90";
    out += static_cast<char>(0x80U | last);
}

/// A locale of its own for the widths: the user's may know no UTF-8.
class Utf8Locale final {
public:
    Utf8Locale() : before_(uselocale(utf8())) {}
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    ~Utf8Locale() { uselocale(before_); }

private:
    static locale_t utf8()
    {
        static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    locale_t before_;
};

}  // namespace

bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), kIsPlain);
}

void appendPrintable(std::string& out, std::string_view text)
{
    std::size_t position = 0;
    while (position < text.size()) {
        position = appendPlain(out, text, position, kIsPlain);
        if (position == text.size()) {
            return;
        }
        const auto character = utf8CharacterAt(text, position);
        if (character.codePoint < 0x80) {
            appendPicture(out, character.codePoint);
        } else if (isHiddenControl(character.codePoint) ||
                   character.codePoint == kReplacementCharacter) {
            out += kReplacementText;
        } else {
            out += text.substr(position, character.size);
        }
        position += character.size;
    }
}

std::string printable(std::string_view text)
{
    std::string out;
    appendPrintable(out, text);
    return out;
}

std::size_t displayWidth(std::string_view text)
{
    if (isPlain(text)) {
        return text.size();
    }
    const Utf8Locale locale;
    std::size_t width = 0;
    for (std::size_t position = 0; position < text.size();) {
        const auto character = utf8CharacterAt(text, position);
        position += character.size;
        const int columns = wcwidth(static_cast<wchar_t>(character.codePoint));
        // A character that the system does not know is drawn as a box.
        width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
    }
    return width;
}

}  // namespace dunmora
