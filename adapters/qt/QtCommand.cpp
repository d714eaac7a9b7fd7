#include "adapters/qt/QtCommand.h"

#include <QAbstractButton>
#include <QAction>

#include <utility>

namespace dunmora {

void QtCommand::setHandler(Handler handler)
{
    handler_ = std::move(handler);
    updateControls();
}

void QtCommand::setEnabled(bool enabled)
{
    isEnabled_ = enabled;
    updateControls();
}

void QtCommand::addAction(QAction& action)
{
    actions_.push_back(&action);
    action.setEnabled(isUsable());
}

void QtCommand::addButton(QAbstractButton& button)
{
    buttons_.push_back(&button);
    button.setEnabled(isUsable());
}

void QtCommand::use(View* sender) const
{
    if (isUsable()) {
        // A copy: the handler may set another one.
        const auto handler = handler_;
        handler(sender);
    }
}

void QtCommand::updateControls() const
{
    for (auto* const action : actions_) {
        action->setEnabled(isUsable());
    }
    for (auto* const button : buttons_) {
        button->setEnabled(isUsable());
    }
}

}  // namespace dunmora
