#include "adapters/qt/ElidedLabel.h"

#include "adapters/qt/OneLineText.h"

#include <QHelpEvent>
#include <QStylePainter>
#include <QToolTip>

#include <algorithm>

namespace dunmora {

bool ElidedLabel::isCut() const
{
    return textFormat() == Qt::PlainText && !wordWrap() && width() < sizeHint().width();
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && isCut()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), toolTipText({text()}),
                           this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* event)
{
    if (!isCut()) {
        QLabel::paintEvent(event);
        return;
    }
    const int indent = std::max(this->indent(), 0);
    const auto place =
        QStyle::visualRect(layoutDirection(), rect(), contentsRect().adjusted(indent, 0, 0, 0));
    const auto cut = property("cutsBeginning").toBool() ? Qt::ElideLeft : Qt::ElideRight;
    QStylePainter(this).drawItemText(
        place, static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
        isEnabled(), fontMetrics().elidedText(text(), cut, place.width()), foregroundRole());
}

}  // namespace dunmora
