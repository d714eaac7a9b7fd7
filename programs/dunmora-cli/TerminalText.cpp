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
        const int columns = wcwidth(static_cast<wchar_t>(character.codePoint));
        // Terminals draw an unknown character as a box.
        width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
    }
    return width;
}

}  // namespace dunmora
