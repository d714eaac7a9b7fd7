#include "adapters/qt/QtView.h"

#include <QLabel>
#include <QWidget>

namespace dunmora {

namespace {

/// Empties the labels whose texts are about what the view replaces.
void blankLabels(const QWidget& view)
{
    for (auto* const label : view.window()->findChildren<QLabel*>()) {
        if (label->property("blankedBy").toString() == view.objectName()) {
            label->clear();
        }
    }
}

}  // namespace

QtView::QtView(QWidget& widget) : widget_(widget), redraw_([this] { widget_.update(); }) {}

void QtView::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
    if (!hidden) {
        blankLabels(widget_);
    }
}

}  // namespace dunmora
