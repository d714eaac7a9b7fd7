#include "adapters/qt/TableFilterBar.h"

#include "adapters/qt/Symbols.h"

#include <QKeyEvent>
#include <QLayout>
#include <QSignalBlocker>
#include <QToolButton>

#include <utility>

namespace dunmora {

TableFilterBar::TableFilterBar(QWidget* bar, QLineEdit* line, Handlers handlers)
    : bar_(bar), line_(line), handlers_(std::move(handlers))
{
    if (bar_ == nullptr || line_ == nullptr) {
        return;
    }
    auto* count = new QLabel(bar);
    count->setTextFormat(Qt::PlainText);
    count->setObjectName(line->objectName() + QLatin1String("Count"));
    count_ = count;
    auto* close = new QToolButton(bar);
    close->setIcon(symbolIcon(QStringLiteral("close")));
    close->setAutoRaise(true);
    close->setToolTip(QStringLiteral("Show all rows"));
    close->setAccessibleName(QStringLiteral("Show all rows"));
    close->setObjectName(line->objectName() + QLatin1String("Close"));
    if (auto* layout = bar->layout()) {
        layout->addWidget(count);
        layout->addWidget(close);
    }
    line->installEventFilter(this);
    connect(line, &QLineEdit::textChanged, this, [this] { handlers_.typed(); });
    connect(close, &QToolButton::clicked, this, [this] { handlers_.closed(); });
    showOrHide();
}

QString TableFilterBar::text() const
{
    return isOpen_ && line_ != nullptr ? line_->text() : QString();
}

void TableFilterBar::open()
{
    if (line_ == nullptr) {
        return;
    }
    isOpen_ = true;
    showOrHide();
    takeFocus();
}

void TableFilterBar::close()
{
    isOpen_ = false;
    if (line_ != nullptr) {
        const QSignalBlocker blocker(*line_);
        line_->clear();
    }
    showOrHide();
}

void TableFilterBar::setTableHidden(bool hidden)
{
    isTableHidden_ = hidden;
    showOrHide();
}

void TableFilterBar::setEnabled(bool enabled)
{
    if (bar_ != nullptr) {
        bar_->setEnabled(enabled);
    }
}

bool TableFilterBar::hasFocus() const
{
    if (bar_ == nullptr) {
        return false;
    }
    const auto* focused = bar_->window()->focusWidget();
    return focused != nullptr && bar_->isAncestorOf(focused);
}

void TableFilterBar::takeFocus()
{
    if (line_ != nullptr) {
        line_->setFocus(Qt::ShortcutFocusReason);
        line_->selectAll();
    }
}

void TableFilterBar::showCount(const QString& text)
{
    if (count_ != nullptr) {
        count_->setText(text);
    }
}

bool TableFilterBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) {
        return QObject::eventFilter(watched, event);
    }
    const auto key = static_cast<QKeyEvent*>(event)->key();
    const bool closes = key == Qt::Key_Escape;
    const bool leaves = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!closes && !leaves) {
        return QObject::eventFilter(watched, event);
    }
    event->accept();
    if (event->type() == QEvent::KeyPress) {
        (closes ? handlers_.closed : handlers_.left)();
    }
    return true;
}

void TableFilterBar::showOrHide()
{
    if (bar_ != nullptr) {
        bar_->setHidden(!isOpen_ || isTableHidden_);
    }
}

}  // namespace dunmora
