#include "adapters/qt/AccessibleWindow.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDialog>

namespace dunmora {

namespace {

class AccessibleWindow final : public QAccessibleWidget {
public:
    explicit AccessibleWindow(QDialog& window) : QAccessibleWidget(&window, QAccessible::Dialog) {}

    QAccessible::Role role() const override
    {
        const auto& window = *widget();
        const bool lacksFocus =
            window.testAttribute(Qt::WA_ShowWithoutActivating) && !window.isActiveWindow();
        return lacksFocus ? QAccessible::Notification : QAccessibleWidget::role();
    }
};

}  // namespace

QAccessibleInterface* accessibleWindow(const QString& /*className*/, QObject* object)
{
    // Alerts and file dialogs are of derived classes.
    return object->metaObject() == &QDialog::staticMetaObject
               ? new AccessibleWindow(*static_cast<QDialog*>(object))
               : nullptr;
}

}  // namespace dunmora
