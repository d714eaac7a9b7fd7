#pragma once

#include <QPlainTextEdit>

namespace dunmora {

/// Shows a text from a server: plain, with no links. It wraps, within words too if it must, and
/// scrolls; the user can select it with the mouse and the keyboard. Assistive technology sees a
/// label.
///
/// Thread: the main thread. Errors: none.
class MessageView final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit MessageView(QWidget* parent = nullptr);

    /// Shows the text. Drops combining marks in excess of those that a character can need.
    void setText(const QString& text);

    QSize sizeHint() const override { return minimumSizeHint(); }

protected:
    void changeEvent(QEvent* event) override;

private:
    void useColorOfLabels();
};

}  // namespace dunmora
