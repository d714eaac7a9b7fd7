#pragma once

#include "platform/Window.h"

#include <QObject>
#include <QPoint>

#include <functional>
#include <optional>

class QWidget;

namespace dunmora {

class ModalSessions;

/// The window of an interface.
class QtWindow final : public QObject, public Window {
public:
    /// Called for the close control and Escape. If empty, the control closes the window and Escape
    /// does nothing.
    using CloseRequest = std::function<void()>;

    /// `widget` must be a top-level window. Both must outlive this object.
    QtWindow(QWidget& widget, ModalSessions& sessions, CloseRequest onCloseRequest);

    void setTitle(const std::string& title) override;
    void setLevel(WindowLevel level) override;
    void setDelegate(WindowDelegate* delegate) override { delegate_ = delegate; }
    using Window::show;
    void show(KeyboardFocus focus) override;
    void close() override;

    QWidget& widget() const { return widget_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool handleClose(QEvent& event);

    QWidget& widget_;
    ModalSessions& sessions_;
    CloseRequest onCloseRequest_;
    WindowDelegate* delegate_ = nullptr;
    WindowLevel level_ = WindowLevel::Normal;
    /// Where the user left it; none before it has been closed.
    std::optional<QPoint> lastPlace_;
    bool isClosing_ = false;
};

}  // namespace dunmora
