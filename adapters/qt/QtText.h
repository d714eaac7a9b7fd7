#pragma once

#include <QByteArrayView>
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

}  // namespace dunmora
