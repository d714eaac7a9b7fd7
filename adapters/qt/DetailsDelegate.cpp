#include "adapters/qt/DetailsDelegate.h"

#include "adapters/qt/Colors.h"
#include "adapters/qt/DetailsModel.h"
#include "adapters/qt/Symbols.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace dunmora {

namespace {

/// In letters of average width. A narrower view has no room for three columns.
constexpr int kLeastLettersOfColumns = 66;
constexpr int kTitleLetters = 20;
/// Likewise, for a view without verdicts.
constexpr int kLeastLettersOfTwoColumns = 44;
/// In lines of text.
constexpr int kPictureLines = 5;

/// Lays the text out in this width, breaking within words only where nothing else helps, and
/// returns its height.
int layOut(QTextLayout& layout, int width)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal height = 0;
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(width, 1));
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return static_cast<int>(std::lround(height));
}

int heightOf(const QString& text, const QFont& font, int width)
{
    QTextLayout layout(text, font);
    return text.isEmpty() ? 0 : layOut(layout, width);
}

void drawText(QPainter& painter, const QRect& place, const QString& text, const QColor& color)
{
    if (text.isEmpty()) {
        return;
    }
    QTextLayout layout(text, painter.font());
    layOut(layout, place.width());
    painter.setPen(color);
    layout.draw(&painter, place.topLeft());
}

}  // namespace

struct DetailsDelegate::Places {
    QRect title;
    QRect value;
    QRect picture;
    QRect sign;
    QRect verdict;
    int height = 0;
};

DetailsDelegate::DetailsDelegate(const QListView& list, const DetailsModel& model)
    : list_(list),
      model_(model),
      hasVerdicts_(!list.property("withoutVerdicts").toBool()),
      only_(symbolIcon(QStringLiteral("only"))),
      same_(symbolIcon(QStringLiteral("same"))),
      different_(symbolIcon(QStringLiteral("different")))
{
}

void DetailsDelegate::metricsChanged()
{
    Q_EMIT sizeHintChanged(QModelIndex());
}

void DetailsDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    const auto& line = model_.drawn(index.row());
    const auto places = placesOf(line, option.rect.width());
    const auto& palette = option.palette;
    // A line is highlighted only while the keys move in the list.
    const bool isCurrent = list_.hasFocus() && list_.currentIndex() == index;
    const auto base = palette.color(isCurrent ? QPalette::Highlight : QPalette::Base);
    const auto ink = palette.color(isCurrent ? QPalette::HighlightedText : QPalette::Text);
    const auto quiet = isCurrent ? ink : mixed(base, ink, kQuiet);
    const auto origin = option.rect.topLeft();

    painter->save();
    painter->setClipRect(option.rect, Qt::IntersectClip);
    painter->setFont(fontOf(line));
    if (isCurrent) {
        painter->fillRect(option.rect, base);
    }
    drawText(*painter, places.title.translated(origin), line.title, line.isHeading ? ink : quiet);
    drawText(*painter, places.value.translated(origin), line.value,
             line.sign == DetailsLine::Sign::Same ? quiet : ink);
    if (!line.picture.isNull()) {
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(places.picture.translated(origin), line.picture);
    }
    iconOf(line.sign).paint(painter, places.sign.translated(origin));
    drawText(*painter, places.verdict.translated(origin), line.verdict,
             line.sign == DetailsLine::Sign::OnlyHere ? ink : quiet);
    painter->restore();
}

QSize DetailsDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                                const QModelIndex& index) const
{
    const int width = list_.viewport()->width();
    return {width, placesOf(model_.drawn(index.row()), width).height};
}

DetailsDelegate::Places DetailsDelegate::placesOf(const DrawnDetails& line, int width) const
{
    const auto font = fontOf(line);
    const auto metrics = list_.fontMetrics();
    const int letter = metrics.averageCharWidth();
    const int lineHeight = metrics.height();
    const int gap = std::max(letter, 4);
    const int above = std::max(lineHeight / 6, 2);
    const int icon =
        std::min(list_.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &list_), lineHeight);
    const bool hasSign = line.sign != DetailsLine::Sign::None;
    const auto pictureSize =
        line.picture.size().scaled(width / 2, kPictureLines * lineHeight, Qt::KeepAspectRatio);

    Places places;
    const int right = width - gap;
    const auto place = [&](QRect& part, int x, int y, int partWidth, const QString& text) {
        part = QRect(x, y, partWidth, heightOf(text, font, partWidth));
        return part.bottom() + 1;
    };
    // The sign is centred on the first line of the verdict.
    const auto placeVerdict = [&](int x, int y) {
        if (hasSign) {
            places.sign = QRect(x, y + (lineHeight - icon) / 2, icon, icon);
        }
        const int indent = icon + gap / 2;
        return place(places.verdict, x + indent, y, right - x - indent, line.verdict);
    };
    const auto placeValue = [&](int x, int y, int valueWidth) {
        int bottom = place(places.value, x, y, valueWidth, line.value);
        if (!line.picture.isNull()) {
            const int top = line.value.isEmpty() ? y : bottom + above;
            places.picture = QRect(QPoint(x, top), pictureSize);
            bottom = top + pictureSize.height();
        }
        return bottom;
    };

    int bottom = above;
    if (line.isHeading) {
        bottom = place(places.title, gap, bottom + lineHeight / 2, right - gap, line.title);
    } else if (width <
               (hasVerdicts_ ? kLeastLettersOfColumns : kLeastLettersOfTwoColumns) * letter) {
        bottom = place(places.title, gap, bottom, right - gap, line.title);
        bottom = placeValue(gap, bottom, right - gap);
        if (hasSign || !line.verdict.isEmpty()) {
            bottom = placeVerdict(gap, bottom);
        }
        bottom += above;
    } else {
        const int titleWidth = hasVerdicts_ ? kTitleLetters * letter : (right - gap) * 3 / 5;
        const int valueLeft = gap + titleWidth + gap;
        const int valueWidth = hasVerdicts_ ? (right - valueLeft) * 11 / 20 : right - valueLeft;
        bottom = std::max({place(places.title, gap, above, titleWidth, line.title),
                           placeValue(valueLeft, above, valueWidth),
                           placeVerdict(valueLeft + valueWidth + gap, above)});
    }
    places.height = std::max(bottom, above + lineHeight) + above;
    return places;
}

QFont DetailsDelegate::fontOf(const DrawnDetails& line) const
{
    auto font = list_.font();
    font.setBold(font.bold() || line.isHeading);
    return font;
}

const QIcon& DetailsDelegate::iconOf(DetailsLine::Sign sign) const
{
    static const QIcon none;
    switch (sign) {
    case DetailsLine::Sign::OnlyHere:
        return only_;
    case DetailsLine::Sign::Same:
        return same_;
    case DetailsLine::Sign::Different:
        return different_;
    case DetailsLine::Sign::None:
        break;
    }
    return none;
}

}  // namespace dunmora
