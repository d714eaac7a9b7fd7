#pragma once

#include <QByteArrayView>
#include <QRegularExpression>
#include <QString>

#include <string>
#include <string_view>

namespace dunmora {

/// Decodes UTF-8; invalid bytes become replacement characters.
inline QString toQString(std::string_view text)
{
    return QString::fromUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

/// Escapes each "&", which would otherwise mark a mnemonic.
inline QString withoutMnemonic(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// The text that a control shows for its title, whose "&" mark a mnemonic or are escaped.
inline QString withoutMarks(QString title)
{
    static const QRegularExpression kMark(QStringLiteral("&(.|$)"));
    return title.replace(kMark, QStringLiteral("\\1"));
}

}  // namespace dunmora
