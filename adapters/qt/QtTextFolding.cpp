#include "adapters/qt/QtTextFolding.h"

#include "adapters/qt/QtText.h"

namespace dunmora {

std::string QtTextFolding::folded(std::string_view utf8) const
{
    // Case folding can decompose a character, and composing can produce an upper-case one.
    return toQString(utf8)
        .normalized(QString::NormalizationForm_KC)
        .toCaseFolded()
        .normalized(QString::NormalizationForm_KC)
        .toStdString();
}

std::string QtTextFolding::digits(std::string_view utf8) const
{
    std::string digits;
    for (const QChar character : toQString(utf8)) {
        if (const int digit = character.digitValue(); digit >= 0) {
            digits += static_cast<char>('0' + digit);
        }
    }
    return digits;
}

}  // namespace dunmora
