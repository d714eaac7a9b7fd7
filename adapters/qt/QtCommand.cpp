#include "adapters/qt/QtCommand.h"

#include "adapters/qt/QtText.h"

#include <QAbstractButton>
#include <QAction>
#include <QKeySequence>

#include <utility>

namespace dunmora {

namespace {

/// The new text with the mnemonic of the old one, at its first occurrence.
QString withMnemonicOf(const QString& oldText, const QString& newText)
{
    auto text = withoutMnemonic(newText);
    const auto mnemonic = QKeySequence::mnemonic(oldText).toString();
    if (!mnemonic.isEmpty()) {
        const auto at = text.indexOf(mnemonic.back(), 0, Qt::CaseInsensitive);
        if (at >= 0) {
            text.insert(at, QLatin1Char('&'));
        }
    }
    return text;
}

}  // namespace

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

void QtCommand::setHidden(bool hidden)
{
    isHidden_ = hidden;
    for (auto* const action : actions_) {
        action->setVisible(!hidden);
    }
    for (auto* const button : buttons_) {
        button->setHidden(hidden);
    }
    updateControls();
}

void QtCommand::setTitle(const std::string& title)
{
    const auto text = toQString(title);
    for (auto* const action : actions_) {
        action->setText(withMnemonicOf(action->text(), text));
    }
    for (auto* const button : buttons_) {
        button->setText(withMnemonicOf(button->text(), text));
    }
}

void QtCommand::setChecked(bool checked)
{
    isChecked_ = checked;
    restoreCheckMarks();
}

void QtCommand::addAction(QAction& action)
{
    // Until the program sets another, the mark is that of the interface file.
    isChecked_ = action.isChecked();
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

void QtCommand::restoreCheckMarks() const
{
    for (auto* const action : actions_) {
        if (action->isCheckable()) {
            action->setChecked(isChecked_);
        }
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
