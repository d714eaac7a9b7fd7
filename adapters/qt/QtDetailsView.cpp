#include "adapters/qt/QtDetailsView.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScrollBar>

#include <utility>

namespace dunmora {

QtDetailsView::QtDetailsView(QListView& widget) : widget_(&widget), delegate_(widget, model_)
{
    widget.setEditTriggers(QAbstractItemView::NoEditTriggers);
    widget.setSelectionMode(QAbstractItemView::SingleSelection);
    widget.setDragDropMode(QAbstractItemView::NoDragDrop);
    widget.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    widget.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    widget.setResizeMode(QListView::Adjust);
    widget.setModel(&model_);
    widget.setItemDelegate(&delegate_);
    widget.installEventFilter(this);
}

QtDetailsView::~QtDetailsView()
{
    if (widget_ != nullptr) {
        widget_->setModel(nullptr);
        widget_->setItemDelegate(nullptr);
    }
}

void QtDetailsView::setHidden(bool hidden)
{
    if (widget_ != nullptr) {
        widget_->setHidden(hidden);
    }
}

void QtDetailsView::setLines(std::vector<DetailsLine> lines)
{
    model_.setLines(std::move(lines));
    if (widget_ != nullptr && !widget_->currentIndex().isValid()) {
        widget_->scrollToTop();
        if (widget_->hasFocus()) {
            selectFirst();
        }
    }
}

bool QtDetailsView::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        event->accept();
        if (event->type() == QEvent::KeyPress) {
            copyCurrentValue();
        }
        return true;
    }
    if (event->type() == QEvent::FocusIn && !widget_->currentIndex().isValid()) {
        selectFirst();
    }
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        delegate_.metricsChanged();
    }
    return QObject::eventFilter(watched, event);
}

/// Gives a screen reader a line to read, and the arrow keys one to leave.
void QtDetailsView::selectFirst() const
{
    widget_->setCurrentIndex(model_.index(0));
}

void QtDetailsView::copyCurrentValue() const
{
    const auto current = widget_ == nullptr ? QModelIndex() : widget_->currentIndex();
    if (current.isValid() && !model_.drawn(current.row()).isHeading) {
        QGuiApplication::clipboard()->setText(model_.value(current.row()));
    }
}

}  // namespace dunmora
