#pragma once

#include <QObject>

class QAbstractButton;

namespace dunmora {

/// Shows a button's whole text in a tool tip while the button is too narrow for it, so that the
/// style cuts it with an ellipsis. A tool tip of the button's own comes first.
///
/// Thread: the main thread. Errors: none.
class WholeTextToolTip final : public QObject {
public:
    /// `button` must outlive this.
    explicit WholeTextToolTip(QAbstractButton& button);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;

    QAbstractButton& button_;
};

}  // namespace dunmora
