#pragma once

#include <QToolButton>

namespace dunmora {

/// A button with a sign and a sentence that may begin with a number. Too narrow for the sentence,
/// it shows the number alone, and the sentence as its tool tip. Its accessible name is the
/// sentence.
///
/// Thread: the main thread. Errors: none.
class NoticeButton final : public QToolButton {
public:
    using QToolButton::QToolButton;

    /// The sign and the number.
    QSize minimumSizeHint() const override;

    bool showsSentence() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString number() const;
};

}  // namespace dunmora
