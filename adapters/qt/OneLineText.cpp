#include "adapters/qt/OneLineText.h"

#include <algorithm>

namespace dunmora {

namespace {

constexpr char16_t kBlank = u' ';
constexpr char16_t kEllipsis = u'\u2026';
constexpr char16_t kNextLine = u'\u0085';

/// Embeddings, overrides and isolates: left open, they would turn round whatever comes after them.
bool isDirectionalFormatting(QChar character)
{
    return (character >= u'\u202A' && character <= u'\u202E') ||
           (character >= u'\u2066' && character <= u'\u2069');
}

bool isBreakOrTab(QChar character)
{
    return (character >= u'\t' && character <= u'\r') || character == kNextLine ||
           character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
}

/// The longest beginning of at most so many bytes that cuts no character of valid UTF-8 in two.
std::string_view beginning(std::string_view utf8, std::size_t maxBytes)
{
    constexpr auto kContinues = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    constexpr std::size_t kMaxContinuations = 3;
    auto length = maxBytes;
    for (std::size_t back = 0; back < kMaxContinuations && length > 0 && kContinues(utf8[length]);
         ++back) {
        --length;
    }
    return utf8.substr(0, length);
}

}  // namespace

QString oneLineText(std::string_view utf8, std::size_t maxBytes)
{
    const bool isCut = utf8.size() > maxBytes;
    if (isCut) {
        utf8 = beginning(utf8, maxBytes);
    }
    const auto size = static_cast<qsizetype>(utf8.size());
    QString text;
    if (isPlainAscii(utf8)) {
        text = QString::fromLatin1(utf8.data(), size);
    } else {
        text = QString::fromUtf8(utf8.data(), size);
        // A carriage return and a line feed are one break.
        text.replace(QLatin1String("\r\n"), QLatin1String(" "));
        text.removeIf(isDirectionalFormatting);
        for (QChar& character : text) {
            if (isBreakOrTab(character)) {
                character = kBlank;
            } else if (character.category() == QChar::Other_Control) {
                character = QChar::ReplacementCharacter;
            }
        }
    }
    if (isCut) {
        text += kEllipsis;
    }
    return text;
}

QString toolTipText(const QStringList& paragraphs)
{
    QString html;
    for (const QString& paragraph : paragraphs) {
        if (!paragraph.isEmpty()) {
            html += QLatin1String("<p>") + paragraph.toHtmlEscaped() + QLatin1String("</p>");
        }
    }
    return html.isEmpty() ? html : QLatin1String("<qt>") + html + QLatin1String("</qt>");
}

bool isPlainAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return byte >= ' ' && byte <= '~'; });
}

}  // namespace dunmora
