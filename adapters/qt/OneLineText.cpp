#include "adapters/qt/OneLineText.h"

#include "text/DisplayText.h"

namespace dunmora {

namespace {

constexpr char16_t kEllipsis = u'\u2026';

/// The longest prefix of at most `maxBytes` bytes that does not split a character of valid UTF-8.
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
    auto text = QString::fromStdString(windowText(utf8));
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

}  // namespace dunmora
