#include "adapters/qt/QtCheckBox.h"

#include <QCheckBox>

namespace dunmora {

CheckState QtCheckBox::state() const
{
    switch (widget_.checkState()) {
    case Qt::Checked:
        return CheckState::On;
    case Qt::PartiallyChecked:
        return CheckState::Mixed;
    case Qt::Unchecked:
        break;
    }
    return CheckState::Off;
}

void QtCheckBox::setState(CheckState state)
{
    // In a tristate box, a click would reach the mixed state too.
    widget_.setTristate(state == CheckState::Mixed);
    switch (state) {
    case CheckState::On:
        widget_.setCheckState(Qt::Checked);
        break;
    case CheckState::Mixed:
        widget_.setCheckState(Qt::PartiallyChecked);
        break;
    case CheckState::Off:
        widget_.setCheckState(Qt::Unchecked);
        break;
    }
}

void QtCheckBox::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
}

}  // namespace dunmora
