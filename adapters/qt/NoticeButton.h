#pragma once

#include <QToolButton>

namespace dunmora {

/// A button with a sign and a sentence that may begin with a number. A long sentence is cut; too
/// narrow for a sentence, the button shows the number alone. The whole sentence is its accessible
/// name, and its tool tip while it is not shown whole.
///
/// Thread: the main thread. Errors: none.
class NoticeButton final : public QToolButton {
public:
    using QToolButton::QToolButton;

    /// The sign and the number.
    QSize minimumSizeHint() const override;

    /// The narrowest width that shows the sentence, perhaps cut.
    int leastSentenceWidth() const;
    bool showsSentence() const { return width() >= leastSentenceWidth(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString number() const;
    /// The width of the sign and what is around the text.
    int frameWidth() const;
};

}  // namespace dunmora
