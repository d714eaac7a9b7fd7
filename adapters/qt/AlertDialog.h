#pragma once

#include "platform/Alert.h"

#include <QDialog>

class QGridLayout;

namespace dunmora {

/// The window of an alert: a sign for its style, a message with an explanation below it, and
/// one to three buttons. It is sized to fit its texts; a long text scrolls. The default button
/// accepts the dialog, the third one ends it with `kOther`; Escape and the close control reject it.
///
/// Thread: the main thread. Errors: none.
class AlertDialog final : public QDialog {
    Q_OBJECT

public:
    /// The dialog's result for the third button, beside QDialog's own.
    static constexpr int kOther = QDialog::Accepted + 1;

    /// `parent` may be null.
    AlertDialog(const AlertContent& content, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addSign(QGridLayout& grid, const AlertContent& content);
    void addTexts(QGridLayout& grid, const AlertContent& content);
    void addButtons(QGridLayout& grid, const AlertContent& content);
};

}  // namespace dunmora
