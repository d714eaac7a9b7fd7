#include "adapters/qt/QtButton.h"

#include "adapters/qt/QtText.h"

#include <QAbstractButton>

namespace dunmora {

QtButton::QtButton(QAbstractButton& widget) : widget_(widget), announcement_(widget) {}

void QtButton::setTitle(const std::string& title)
{
    widget_.setText(withoutMnemonic(toQString(title)));
}

void QtButton::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
}

}  // namespace dunmora
