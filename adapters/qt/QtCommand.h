#pragma once

#include "platform/InterfaceLoader.h"

#include <string>
#include <vector>

class QAbstractButton;
class QAction;

namespace dunmora {

/// A command of an interface with the actions, buttons and check boxes that trigger it.
class QtCommand final : public Command {
public:
    void setHandler(Handler handler) override;
    void setEnabled(bool enabled) override;
    void setHidden(bool hidden) override;
    void setTitle(const std::string& title) override;
    void setChecked(bool checked) override;

    /// Enables and disables a control together with the command; the control must stay alive until
    /// the last call to the command.
    void addAction(QAction& action);
    void addButton(QAbstractButton& button);

    bool isUsable() const { return isEnabled_ && !isHidden_ && handler_ != nullptr; }

    /// Calls the handler, if the command is usable. `sender` may be null.
    void use(View* sender) const;

    /// Gives the controls their check mark again, which Qt toggles when the user uses one.
    void restoreCheckMarks() const;

private:
    void updateControls() const;

    Handler handler_;
    bool isEnabled_ = true;
    bool isHidden_ = false;
    bool isChecked_ = false;
    std::vector<QAction*> actions_;
    std::vector<QAbstractButton*> buttons_;
};

}  // namespace dunmora
