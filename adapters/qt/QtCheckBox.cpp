#include "adapters/qt/QtCheckBox.h"

#include <QCheckBox>

namespace dunmora {

QtCheckBox::QtCheckBox(QCheckBox& widget) : widget_(widget), redraw_([this] { widget_.update(); })
{
}

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
    // A box that takes three states would give the user all three.
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
