#include "adapters/qt/QtMenu.h"

#include "adapters/qt/QtText.h"

#include <QAction>
#include <QMenu>

#include <utility>

namespace dunmora {

QtMenu::QtMenu(QMenu& menu, std::function<bool()> isBlocked)
    : menu_(menu), isBlocked_(std::move(isBlocked))
{
    auto* const around = qobject_cast<QMenu*>(menu.parentWidget());
    QObject::connect(around != nullptr ? around : &menu, &QMenu::aboutToShow, &context_, [this] {
        if (opening_) {
            opening_();
        }
    });
}

void QtMenu::setEntries(std::vector<MenuEntry> entries)
{
    for (auto* const action : std::exchange(entries_, {})) {
        menu_.removeAction(action);
        // Later, because the caller may be the handler of this entry.
        action->deleteLater();
    }
    if (!entries.empty() && !menu_.isEmpty()) {
        auto* const separator = new QAction(&menu_);
        separator->setSeparator(true);
        add(*separator);
    }
    for (auto& entry : entries) {
        auto* const action = new QAction(withoutMnemonic(toQString(entry.title)), &menu_);
        QObject::connect(action, &QAction::triggered, &context_,
                         [this, run = std::move(entry.run)] {
                             if (!isBlocked_()) {
                                 run();
                             }
                         });
        add(*action);
    }
}

void QtMenu::setOpeningHandler(std::function<void()> handler)
{
    opening_ = std::move(handler);
}

void QtMenu::setEnabled(bool enabled)
{
    menu_.setEnabled(enabled);
}

void QtMenu::add(QAction& action)
{
    menu_.addAction(&action);
    entries_.push_back(&action);
}

}  // namespace dunmora
