#pragma once

#include "platform/InterfaceLoader.h"

#include <vector>

class QAbstractButton;
class QAction;

namespace dunmora {

/// A command of an interface with all that gives it: actions, buttons and check boxes.
class QtCommand final : public Command {
public:
    void setHandler(Handler handler) override;
    void setEnabled(bool enabled) override;

    /// Enables and disables these with the command; they must outlive it or its last call.
    void addAction(QAction& action);
    void addButton(QAbstractButton& button);

    bool isUsable() const { return isEnabled_ && handler_ != nullptr; }

    /// Does what the user asks for; nothing while it is not usable.
    void use(View* sender) const;

private:
    void showUsable() const;

    Handler handler_;
    bool isEnabled_ = true;
    std::vector<QAction*> actions_;
    std::vector<QAbstractButton*> buttons_;
};

}  // namespace dunmora
