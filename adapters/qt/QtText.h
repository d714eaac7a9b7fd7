#pragma once

#include <QByteArrayView>
#include <QString>

#include <string>
#include <string_view>

namespace dunmora {

/// The core's UTF-8 as Qt's text; bytes that are no UTF-8 become replacement characters.
inline QString toQString(std::string_view text)
{
    return QString::fromUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

/// A text that shows as it is where Qt takes "&" for the mark of a mnemonic.
inline QString withoutMnemonic(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace dunmora
