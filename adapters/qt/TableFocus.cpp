#include "adapters/qt/TableFocus.h"

#include "adapters/qt/TableFilterBar.h"

namespace dunmora {

TableFocus::TableFocus(QTableView& table, const TableFilterBar& filterBar)
    : table_(&table), filterBar_(filterBar)
{
}

void TableFocus::take()
{
    if (table_ != nullptr) {
        table_->setFocus(Qt::OtherFocusReason);
    }
}

void TableFocus::takeIfFree()
{
    if (table_ == nullptr || table_->isHidden() || !table_->isEnabledTo(table_->window())) {
        return;
    }
    const auto& window = *table_->window();
    const auto* const focused = window.focusWidget();
    // A window that was deactivated and activated again while its table was hidden still reports
    // the table as its focus widget, although nothing has the focus.
    const bool isFree = focused == nullptr || focused == &window || focused == table_ ||
                        !focused->isVisibleTo(&window) || !focused->isEnabled();
    if (isFree) {
        take();
    }
}

void TableFocus::rememberDuring(const std::function<void()>& disable)
{
    const auto& window = *table_->window();
    const bool hadFocus =
        table_->hasFocus() || window.focusWidget() == table_ || filterBar_.hasFocus();
    before_ = hadFocus ? window.focusWidget() : nullptr;
    disable();
    after_ = window.focusWidget();
}

void TableFocus::restore()
{
    if (before_ != nullptr && table_->window()->focusWidget() == after_) {
        before_->setFocus(Qt::OtherFocusReason);
        before_.clear();
    }
}

}  // namespace dunmora
