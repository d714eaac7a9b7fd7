#pragma once

#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtInterface.h"
#include "adapters/qt/QtInterfaceLoader.h"
#include "platform/Button.h"
#include "platform/CheckBox.h"
#include "platform/ProgressIndicator.h"
#include "platform/TextField.h"
#include "platform/Window.h"
#include "tests/adapters/qt/EventLoop.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace dunmora::test {

/// The visible window with this object name.
inline QWidget& shownWindow(const QString& name)
{
    for (auto* const window : QApplication::topLevelWidgets()) {
        if (window->objectName() == name && window->isVisible()) {
            return *window;
        }
    }
    throw std::runtime_error("no window is shown as " + name.toStdString());
}

template <typename Widget>
Widget& widgetIn(QWidget& window, const char* name)
{
    auto* const widget = window.findChild<Widget*>(QString::fromLatin1(name));
    if (widget == nullptr) {
        throw std::runtime_error(std::string("no widget is named ") + name);
    }
    return *widget;
}

/// Clicks through the window system, so that the click passes every event filter.
inline void click(QWidget& widget)
{
    auto* const window = widget.window();
    const auto place = widget.mapTo(window, widget.rect().center());
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, place);
}

/// Presses a key in the focused widget through the window system.
inline void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(window.windowHandle(), key, modifiers);
}

/// Requests that the window close, like its close control.
inline void pressCloseControl(QWidget& window)
{
    window.windowHandle()->close();
    handleEvents();
}

/// An application without controllers, whose interfaces the test drives itself.
class QtTest : public testing::Test {
protected:
    void TearDown() override { handleEvents(); }

    std::unique_ptr<QtInterface> load(std::string_view name)
    {
        auto interface = loader.loadInterface(name);
        if (!interface) {
            throw std::runtime_error("no interface " + std::string(name));
        }
        return interface;
    }

    /// Runs the work once the current events have been handled.
    template <typename Work>
    void soon(Work work)
    {
        QMetaObject::invokeMethod(&application, work, Qt::QueuedConnection);
    }

    QtApplication application{*qobject_cast<QApplication*>(QCoreApplication::instance())};
    QtInterfaceLoader loader{application.sessions()};
};

}  // namespace dunmora::test
