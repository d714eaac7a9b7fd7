#include "adapters/qt/QtView.h"

#include <QLabel>
#include <QWidget>

namespace dunmora {

namespace {

/// Clears the labels whose text describes what the view replaces.
void blankLabels(const QWidget& view)
{
    for (auto* const label : view.window()->findChildren<QLabel*>()) {
        if (label->property("blankedBy").toString() == view.objectName()) {
            label->clear();
        }
    }
}

}  // namespace

void QtView::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
    if (!hidden) {
        blankLabels(widget_);
    }
}

}  // namespace dunmora
