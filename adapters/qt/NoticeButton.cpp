#include "adapters/qt/NoticeButton.h"

#include "adapters/qt/OneLineText.h"
#include "adapters/qt/QtText.h"

#include <QHelpEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolTip>

namespace dunmora {

QSize NoticeButton::minimumSizeHint() const
{
    const auto metrics = fontMetrics();
    auto size = sizeHint();
    size.rwidth() += metrics.size(Qt::TextShowMnemonic, number()).width() -
                     metrics.size(Qt::TextShowMnemonic, text()).width();
    return size;
}

bool NoticeButton::showsSentence() const
{
    return width() >= sizeHint().width();
}

bool NoticeButton::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && !showsSentence()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           toolTipText({withoutMarks(text()), toolTip()}), this);
        return true;
    }
    return QToolButton::event(event);
}

void NoticeButton::paintEvent(QPaintEvent* /*event*/)
{
    QStyleOptionToolButton option;
    initStyleOption(&option);
    if (!showsSentence()) {
        option.text = number();
    }
    QStylePainter(this).drawComplexControl(QStyle::CC_ToolButton, option);
}

QString NoticeButton::number() const
{
    const auto sentence = text();
    const bool hasNumber = !sentence.isEmpty() && sentence.front().isDigit();
    return hasNumber ? sentence.section(QLatin1Char(' '), 0, 0) : QString();
}

}  // namespace dunmora
