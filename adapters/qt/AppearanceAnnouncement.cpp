#include "adapters/qt/AppearanceAnnouncement.h"

#include <QAccessible>
#include <QEvent>
#include <QWidget>

namespace dunmora {

AppearanceAnnouncement::AppearanceAnnouncement(QWidget& widget) : widget_(widget)
{
    widget_.installEventFilter(this);
}

bool AppearanceAnnouncement::eventFilter(QObject* watched, QEvent* event)
{
    // Spontaneous when the user restores a minimised window.
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        // Later: a text field draws its new text after it has been shown.
        QMetaObject::invokeMethod(
            this, [this] { announce(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void AppearanceAnnouncement::announce() const
{
    QAccessibleEvent event(&widget_, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

}  // namespace dunmora
