#include "programs/dunmora-cli/TerminalText.h"

#include "text/DisplayText.h"
#include "text/Utf8.h"

#include <clocale>
#include <cwchar>

namespace dunmora {

namespace {

/// Switches the thread to a UTF-8 locale: the widths must not depend on the user's locale.
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

/// Needs a `Utf8Locale`.
std::size_t widthOf(char32_t c)
{
    const int columns = wcwidth(static_cast<wchar_t>(c));
    // Terminals draw an unknown character as a box.
    return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

constexpr std::size_t kEllipsisWidth = 1;

}  // namespace

std::size_t displayWidth(std::string_view text)
{
    if (isPlainAscii(text)) {
        return text.size();
    }
    const Utf8Locale locale;
    std::size_t width = 0;
    for (std::size_t position = 0; position < text.size();) {
        const auto character = utf8CharacterAt(text, position);
        position += character.size;
        width += widthOf(character.codePoint);
    }
    return width;
}

std::string_view beginningThatFits(std::string_view text, std::size_t columns)
{
    const Utf8Locale locale;
    std::size_t width = 0;
    std::size_t position = 0;
    while (position < text.size()) {
        const auto character = utf8CharacterAt(text, position);
        width += widthOf(character.codePoint);
        if (position > 0 && width > columns) {
            break;
        }
        position += character.size;
    }
    return text.substr(0, position);
}

std::string_view takeLine(std::string_view& text, std::size_t columns)
{
    auto line = beginningThatFits(text, columns);
    const auto isSpaceAt = [&](std::size_t i) { return text[i] == ' '; };
    if (line.size() < text.size() && !isSpaceAt(line.size())) {
        const auto space = line.rfind(' ');
        line = line.substr(0, space == 0 ? std::string_view::npos : space);
    }
    text.remove_prefix(line.size());
    text.remove_prefix(!text.empty() && text.front() == ' ' ? 1 : 0);
    return line;
}

std::string withoutEnd(std::string_view text, std::size_t columns)
{
    if (displayWidth(text) <= columns) {
        return std::string(text);
    }
    return std::string(beginningThatFits(text, columns - kEllipsisWidth)) + std::string(kEllipsis);
}

std::string withoutBeginning(std::string_view text, std::size_t columns)
{
    auto width = displayWidth(text);
    if (width <= columns) {
        return std::string(text);
    }
    const Utf8Locale locale;
    // Combining characters go with the one before them; a space after the ellipsis shows nothing.
    const auto isUseless = [&] {
        return !text.empty() &&
               (text.front() == ' ' || widthOf(utf8CharacterAt(text, 0).codePoint) == 0);
    };
    while (width > columns - kEllipsisWidth || isUseless()) {
        const auto character = utf8CharacterAt(text, 0);
        width -= widthOf(character.codePoint);
        text.remove_prefix(character.size);
    }
    return std::string(kEllipsis) + std::string(text);
}

}  // namespace dunmora
