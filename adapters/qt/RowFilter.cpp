#include "adapters/qt/RowFilter.h"

#include "adapters/qt/FoldedText.h"
#include "adapters/qt/OneLineText.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <limits>

namespace dunmora {

namespace {

constexpr char kBetweenNames = ' ';
/// Between cells that are not read as one. Nobody can type it into a line.
constexpr char kBetweenCells = '\n';

char separatorBetween(const RowFilter::Cell& left, const RowFilter::Cell& right)
{
    const bool areNames =
        left.kind == RowFilter::Cell::Kind::Name && right.kind == RowFilter::Cell::Kind::Name;
    return areNames && !left.text.empty() && !right.text.empty() ? kBetweenNames : kBetweenCells;
}

QString wholeText(std::string_view utf8)
{
    return oneLineText(utf8, std::numeric_limits<std::size_t>::max());
}

void appendDigits(std::string& digits, std::string_view phone)
{
    if (isPlainAscii(phone)) {
        std::copy_if(phone.begin(), phone.end(), std::back_inserter(digits),
                     [](char character) { return character >= '0' && character <= '9'; });
        return;
    }
    for (const QChar character : wholeText(phone)) {
        if (const int digit = character.digitValue(); digit >= 0) {
            digits += static_cast<char>('0' + digit);
        }
    }
}

/// The digits of a text that holds nothing but digits and what people write between them.
std::string digitsOfNumber(const QString& folded)
{
    constexpr QStringView kPunctuation = u"+-()./ ";
    const bool couldBeNumber =
        std::all_of(folded.begin(), folded.end(), [&kPunctuation](QChar character) {
            return character.isDigit() || kPunctuation.contains(character);
        });
    std::string digits;
    if (couldBeNumber) {
        appendDigits(digits, folded.toStdString());
    }
    return digits;
}

}  // namespace

RowFilter::RowFilter(const QString& typed)
    : folded_(foldedText(wholeText(typed.toStdString())).trimmed()),
      foldedAscii_(asciiOf(folded_)),
      digits_(digitsOfNumber(folded_))
{
}

bool RowFilter::matches(std::span<const Cell> row)
{
    return isEmpty() || matchesText(row) || (!digits_.empty() && matchesDigits(row));
}

bool RowFilter::narrows(const RowFilter& other) const
{
    const bool containsDigits =
        digits_.empty() ||
        (!other.digits_.empty() && digits_.find(other.digits_) != std::string::npos);
    return other.isEmpty() || (folded_.contains(other.folded_) && containsDigits);
}

bool RowFilter::matchesText(std::span<const Cell> row)
{
    buffer_.clear();
    bool isAscii = true;
    for (std::size_t i = 0; i < row.size() && isAscii; ++i) {
        if (i > 0) {
            buffer_ += separatorBetween(row[i - 1], row[i]);
        }
        isAscii = appendFoldedAscii(buffer_, row[i].text);
    }
    if (isAscii) {
        return !foldedAscii_.empty() && buffer_.find(foldedAscii_) != std::string::npos;
    }

    QString folded;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (i > 0) {
            folded += QLatin1Char(separatorBetween(row[i - 1], row[i]));
        }
        folded += foldedText(wholeText(row[i].text));
    }
    return folded.contains(folded_);
}

bool RowFilter::matchesDigits(std::span<const Cell> row)
{
    buffer_.clear();
    for (const Cell& cell : row) {
        if (cell.kind == Cell::Kind::Phone) {
            appendDigits(buffer_, cell.text);
            buffer_ += kBetweenCells;
        }
    }
    return buffer_.find(digits_) != std::string::npos;
}

}  // namespace dunmora
