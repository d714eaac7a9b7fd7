#include "adapters/qt/WholeTextToolTip.h"

#include "adapters/qt/OneLineText.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QHelpEvent>
#include <QToolTip>

namespace dunmora {

WholeTextToolTip::WholeTextToolTip(QAbstractButton& button) : button_(button)
{
    button_.installEventFilter(this);
}

bool WholeTextToolTip::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ToolTip || !button_.toolTip().isEmpty() ||
        button_.width() >= button_.sizeHint().width()) {
        return QObject::eventFilter(watched, event);
    }
    auto* const accessible = QAccessible::queryAccessibleInterface(&button_);
    // The name is the text without the marks of mnemonics.
    const auto text = oneLineText(accessible->text(QAccessible::Name).toStdString());
    QToolTip::showText(static_cast<const QHelpEvent*>(event)->globalPos(), toolTipText({text}),
                       &button_);
    return true;
}

}  // namespace dunmora
