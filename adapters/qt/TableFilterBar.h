#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <functional>

namespace dunmora {

/// The bar in which the user types what the rows of a table have to contain. It tells how many do.
///
/// Thread: the main thread. Errors: none.
class TableFilterBar final : public QObject {
public:
    /// What the user does in the bar.
    struct Handlers {
        std::function<void()> typed;
        /// The user wants to go to the rows that are shown.
        std::function<void()> left;
        /// The user wants to see all rows again.
        std::function<void()> closed;
    };

    /// A table without a bar has none of the two.
    TableFilterBar(QWidget* bar, QLineEdit* line, Handlers handlers);

    bool isOpen() const { return isOpen_; }
    /// What the rows have to contain; empty while the bar is closed.
    QString text() const;

    /// Shows the bar and leads the keyboard to it.
    void open();
    /// Forgets the text and hides the bar.
    void close();
    /// Takes the bar out of the layout together with its table.
    void setTableHidden(bool hidden);
    void setEnabled(bool enabled);
    bool hasFocus() const;
    void takeFocus();

    void showCount(std::size_t shown, std::size_t all);

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
