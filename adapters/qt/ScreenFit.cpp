#include "adapters/qt/ScreenFit.h"

#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMenu>
#include <QProxyStyle>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <QWidget>

namespace dunmora {

namespace {

/// What the layout makes its window have, at least.
QSize neededSize(const QLayout& layout)
{
    return layout.sizeConstraint() == QLayout::SetFixedSize ? layout.totalSizeHint()
                                                            : layout.totalMinimumSize();
}

/// Repeats what a window's layout does whenever its contents change, within the screen.
class MinimumSizeLimit final : public QObject {
public:
    explicit MinimumSizeLimit(QWidget& window) : QObject(&window), window_(window)
    {
        window.installEventFilter(this);
        update();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == &window_ && event->type() == QEvent::LayoutRequest) {
            update();
        }
        return false;
    }

private:
    /// An explicit minimum replaces that of the layout.
    void update() const
    {
        window_.setMinimumSize(
            window_.layout()->totalMinimumSize().boundedTo(spaceWithinFrame(window_)));
    }

    QWidget& window_;
};

/// The contents of a dialog. Asks for as much space as they need, within the screen.
class ContentArea final : public QScrollArea {
public:
    ContentArea(QLayout& layout, QWidget& dialog) : QScrollArea(&dialog)
    {
        auto* const content = new QWidget;
        layout.setSizeConstraint(QLayout::SetDefaultConstraint);
        // Takes the layout and its widgets from the dialog.
        content->setLayout(&layout);
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setWidget(content);
        setAccessibleName(dialog.windowTitle());
    }

    QSize sizeHint() const override
    {
        const QSize bars(verticalScrollBar()->sizeHint().width(),
                         horizontalScrollBar()->sizeHint().height());
        return (widget()->layout()->totalSizeHint() + bars).boundedTo(spaceWithinFrame(*window()));
    }

    QSize minimumSizeHint() const override { return sizeHint(); }
};

/// The user's style, except for its hint about high menus.
class ScrollingMenuStyle final : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override
    {
        return hint == SH_Menu_Scrollable
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

}  // namespace

QSize spaceWithinFrame(const QWidget& window)
{
    const auto& style = *window.style();
    const int edge = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &window);
    const int title = style.pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    return window.screen()->availableSize() - QSize(2 * edge, title + edge);
}

void limitMinimumSize(QWidget& window)
{
    // The window owns it.
    new MinimumSizeLimit(window);
}

void fitToScreen(QWidget& dialog)
{
    auto* const layout = dialog.layout();
    if (layout == nullptr) {
        return;
    }
    const auto space = spaceWithinFrame(dialog);
    const auto needed = neededSize(*layout);
    if (needed.boundedTo(space) != needed) {
        auto* const focused = dialog.focusWidget();
        auto* const area = new ContentArea(*layout, dialog);
        auto* const around = new QVBoxLayout(&dialog);
        around->setContentsMargins({});
        around->setSizeConstraint(QLayout::SetFixedSize);
        around->addWidget(area);
        if (focused != nullptr) {
            // It has lost the focus with its parent.
            focused->setFocus();
        }
    }
    // Qt gives all others the size of their contents.
    if (dialog.testAttribute(Qt::WA_Resized)) {
        dialog.resize(dialog.size().boundedTo(space));
    }
}

void letMenusScroll(QWidget& window)
{
    const auto menus = window.findChildren<QMenu*>();
    if (menus.empty()) {
        return;
    }
    auto* const style = new ScrollingMenuStyle;
    style->setParent(&window);
    for (auto* const menu : menus) {
        menu->setStyle(style);
    }
}

}  // namespace dunmora
