#include "adapters/qt/FoldedText.h"

#include "text/DisplayText.h"

namespace dunmora {

QString foldedText(const QString& text)
{
    // Folding can take a composed character apart, and composing can bring an upper case.
    return text.normalized(QString::NormalizationForm_KC)
        .toCaseFolded()
        .normalized(QString::NormalizationForm_KC);
}

bool appendFoldedAscii(std::string& folded, std::string_view text)
{
    if (!isPlainAscii(text)) {
        return false;
    }
    for (const char letter : text) {
        const bool isUpper = letter >= 'A' && letter <= 'Z';
        folded += isUpper ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return true;
}

std::string asciiOf(const QString& folded)
{
    const auto ascii = folded.toStdString();
    return isPlainAscii(ascii) ? ascii : std::string();
}

}  // namespace dunmora
