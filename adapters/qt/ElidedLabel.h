#pragma once

#include <QLabel>

namespace dunmora {

/// A label whose single line ends in an ellipsis where it is too narrow for its text, and which
/// then has the whole text as its tool tip. With the dynamic property `cutsBeginning` the line
/// begins in the ellipsis: the end of a host matters most. Text that wraps is never cut.
///
/// Thread: the main thread. Errors: none.
class ElidedLabel final : public QLabel {
public:
    using QLabel::QLabel;

    bool isCut() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace dunmora
