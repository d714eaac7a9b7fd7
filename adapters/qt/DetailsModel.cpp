#include "adapters/qt/DetailsModel.h"

#include "adapters/qt/OneLineText.h"
#include "adapters/qt/Picture.h"
#include "adapters/qt/QtText.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace dunmora {

namespace {

/// A longer value would push everything below it out of the view; copying takes all of it.
constexpr int kMaxValueLines = 12;

QString shownValue(std::string_view value)
{
    const auto shown = shownPart(value);
    bool isCut = shown.size() < value.size();
    QStringList lines;
    for (std::size_t begin = 0; begin <= shown.size();) {
        if (lines.size() == kMaxValueLines) {
            isCut = true;
            break;
        }
        const auto end = std::min(shown.find('\n', begin), shown.size());
        lines << oneLineText(shown.substr(begin, end - begin)).trimmed();
        begin = end + 1;
    }
    return lines.join(QChar(QChar::LineSeparator)) +
           (isCut ? QString::fromUtf8(kEllipsis.data(), qsizetype(kEllipsis.size())) : QString());
}

bool haveSameTitles(const std::vector<DetailsLine>& some, const std::vector<DetailsLine>& others)
{
    return std::equal(
        some.begin(), some.end(), others.begin(), others.end(),
        [](const DetailsLine& one, const DetailsLine& other) { return one.title == other.title; });
}

}  // namespace

void DetailsModel::setLines(std::vector<DetailsLine> lines)
{
    if (lines == lines_) {
        return;
    }
    const bool isSameCard = haveSameTitles(lines, lines_);
    if (!isSameCard) {
        beginResetModel();
    }
    std::vector<DrawnDetails> drawn;
    drawn.reserve(lines.size());
    std::transform(lines.begin(), lines.end(), std::back_inserter(drawn),
                   [this](const DetailsLine& line) { return drawnDetails(line); });
    lines_ = std::move(lines);
    drawn_ = std::move(drawn);
    if (!isSameCard) {
        endResetModel();
    } else if (!lines_.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
        // A verdict of another length may take more lines.
        Q_EMIT layoutChanged();
    }
}

DrawnDetails DetailsModel::drawnDetails(const DetailsLine& line) const
{
    return {oneLineText(line.title),   shownValue(line.value), line.sign,
            oneLineText(line.verdict), picture(line),          line.isHeading};
}

QImage DetailsModel::picture(const DetailsLine& line) const
{
    const auto same = std::find_if(lines_.begin(), lines_.end(), [&line](const DetailsLine& shown) {
        return shown.picture == line.picture;
    });
    return same == lines_.end() ? decodedPicture(line.picture)
                                : drawn_[static_cast<std::size_t>(same - lines_.begin())].picture;
}

QString DetailsModel::value(int row) const
{
    return toQString(lines_[static_cast<std::size_t>(row)].value);
}

int DetailsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant DetailsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const auto& line = lines_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return drawn(index.row()).title;
    case Qt::AccessibleTextRole:
        return oneLineText(line.accessibleText);
    default:
        return {};
    }
}

}  // namespace dunmora
