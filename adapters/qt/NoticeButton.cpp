#include "adapters/qt/NoticeButton.h"

#include "adapters/qt/OneLineText.h"
#include "adapters/qt/QtText.h"

#include <QHelpEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolTip>

#include <algorithm>

namespace dunmora {

namespace {

/// Fewer letters of a sentence that is cut say less than its number. The sentences that count
/// something are shorter.
constexpr int kLeastLetters = 40;

}  // namespace

QSize NoticeButton::minimumSizeHint() const
{
    return {frameWidth() + fontMetrics().size(Qt::TextShowMnemonic, number()).width(),
            sizeHint().height()};
}

int NoticeButton::leastSentenceWidth() const
{
    return std::min(sizeHint().width(),
                    frameWidth() + kLeastLetters * fontMetrics().averageCharWidth());
}

bool NoticeButton::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && width() < sizeHint().width()) {
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
    option.text = showsSentence()
                      ? fontMetrics().elidedText(text(), Qt::ElideRight, width() - frameWidth(),
                                                 Qt::TextShowMnemonic)
                      : number();
    QStylePainter(this).drawComplexControl(QStyle::CC_ToolButton, option);
}

QString NoticeButton::number() const
{
    const auto sentence = text();
    const bool hasNumber = !sentence.isEmpty() && sentence.front().isDigit();
    return hasNumber ? sentence.section(QLatin1Char(' '), 0, 0) : QString();
}

int NoticeButton::frameWidth() const
{
    return sizeHint().width() - fontMetrics().size(Qt::TextShowMnemonic, text()).width();
}

}  // namespace dunmora
