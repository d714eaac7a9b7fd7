#pragma once

#include "platform/Menu.h"

#include <QObject>

#include <functional>
#include <vector>

class QAction;
class QMenu;

namespace dunmora {

/// A submenu of an interface.
class QtMenu final : public Menu {
public:
    /// `menu` must outlive this. Entries do nothing while `isBlocked` returns true.
    QtMenu(QMenu& menu, std::function<bool()> isBlocked);
    ~QtMenu() override = default;
    QtMenu(const QtMenu&) = delete;
    QtMenu& operator=(const QtMenu&) = delete;

    void setEntries(std::vector<MenuEntry> entries) override;
    void setOpeningHandler(std::function<void()> handler) override;
    void setEnabled(bool enabled) override;

private:
    void add(QAction& action);

    QMenu& menu_;
    std::function<bool()> isBlocked_;
    std::function<void()> opening_;
    std::vector<QAction*> entries_;
    // Disconnects everything when it is destroyed.
    QObject context_;
};

}  // namespace dunmora
