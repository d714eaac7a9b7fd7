#include "adapters/qt/OneLineText.h"

#include <string>

namespace dunmora {

QString oneLineText(std::string_view utf8, std::size_t maxBytes)
{
    const auto shown = shownPart(utf8, maxBytes);
    auto text = windowText(shown);
    if (shown.size() < utf8.size()) {
        text += kEllipsis;
    }
    return QString::fromStdString(text);
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
