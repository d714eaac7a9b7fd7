#include "adapters/qt/QtView.h"

#include "adapters/qt/MessageView.h"

#include <QWidget>

namespace dunmora {

namespace {

/// Clears the messages whose text describes what the view replaces.
void blankMessages(const QWidget& view)
{
    for (auto* const message : view.window()->findChildren<MessageView*>()) {
        if (message->property("blankedBy").toString() == view.objectName()) {
            message->clear();
        }
    }
}

}  // namespace

void QtView::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
    if (!hidden) {
        blankMessages(widget_);
    }
}

}  // namespace dunmora
