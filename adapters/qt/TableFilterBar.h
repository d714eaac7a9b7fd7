#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

namespace dunmora {

/// The bar in which the user types a text that the shown rows must contain. It shows how many rows
/// match.
///
/// Thread: the main thread. Errors: none.
class TableFilterBar final : public QObject {
public:
    struct Handlers {
        /// The text has changed.
        std::function<void()> typed;
        /// The user moves on to the rows that are shown.
        std::function<void()> left;
        /// The user closes the bar.
        std::function<void()> closed;
    };

    /// The bar and the line are null for a table without a filter.
    TableFilterBar(QWidget* bar, QLineEdit* line, Handlers handlers);

    bool isOpen() const { return isOpen_; }
    /// The text that rows must contain; empty while the bar is closed.
    QString text() const;

    /// Shows the bar and moves the keyboard focus to it.
    void open();
    /// Clears the text and hides the bar.
    void close();
    /// Hides the bar together with its table.
    void setTableHidden(bool hidden);
    void setEnabled(bool enabled);
    bool hasFocus() const;
    void takeFocus();

    void showCount(const QString& text);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showOrHide();

    QPointer<QWidget> bar_;
    QPointer<QLineEdit> line_;
    QPointer<QLabel> count_;
    Handlers handlers_;
    bool isOpen_ = false;
    bool isTableHidden_ = false;
};

}  // namespace dunmora
