#include "tests/adapters/qt/QtTest.h"

#include <QAction>
#include <QCheckBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace dunmora::test {

namespace {

class ScrollBar final : public QScrollBar {
public:
    using QScrollBar::QScrollBar;
    using QScrollBar::repeatAction;
};

/// A window with a button, a line edit and a scroll bar, which counts the clicks on the button.
class Pane final {
public:
    explicit Pane(const QString& name)
    {
        window.setObjectName(name);
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(&button);
        layout->addWidget(&line);
        layout->addWidget(&scrollBar);
        QObject::connect(&button, &QPushButton::clicked, [this] { ++clicks; });
    }

    QWidget window;
    QPushButton button{QStringLiteral("&Press")};
    QLineEdit line;
    ScrollBar scrollBar{Qt::Horizontal};
    int clicks = 0;
};

class ModalSessionsTest : public QtTest {
protected:
    ModalSessionsTest() { main.window.show(); }

    /// Runs a session that calls `inside` and then ends.
    void during(QWidget& window, const std::function<void()>& inside)
    {
        soon([&] {
            inside();
            sessions.end(window);
        });
        sessions.run(window);
    }

    ModalSessions& sessions = application.sessions();
    Pane main{QStringLiteral("main")};
    Pane dialog{QStringLiteral("dialog")};
    Pane inner{QStringLiteral("inner")};
};

TEST_F(ModalSessionsTest, ShowsTheWindowAndLeavesItOpen)
{
    bool wasVisible = false;

    during(dialog.window, [&] { wasVisible = dialog.window.isVisible(); });

    EXPECT_TRUE(wasVisible);
    EXPECT_TRUE(dialog.window.isVisible());
}

TEST_F(ModalSessionsTest, BlocksClicksOnOtherWindows)
{
    during(dialog.window, [&] {
        click(main.button);
        click(dialog.button);
    });
    EXPECT_EQ(main.clicks, 0);
    EXPECT_EQ(dialog.clicks, 1);

    click(main.button);
    EXPECT_EQ(main.clicks, 1);
}

TEST_F(ModalSessionsTest, KeepsAWindowHiddenUntilTheUserNeedsIt)
{
    const auto during = [this](const std::function<void()>& inside) {
        soon([&] {
            inside();
            sessions.end(dialog.window);
        });
        sessions.runHidden(dialog.window);
        dialog.window.hide();
    };

    during([&] {
        press(main.window, Qt::Key_A);
        EXPECT_FALSE(dialog.window.isVisible());
        click(main.button);
        EXPECT_TRUE(dialog.window.isVisible());
    });
    during([&] {
        EXPECT_FALSE(dialog.window.isVisible());
        press(main.window, Qt::Key_Escape);
        EXPECT_TRUE(dialog.window.isVisible());
    });
    EXPECT_EQ(main.clicks, 0);
    EXPECT_EQ(main.line.text(), QString());
}

TEST_F(ModalSessionsTest, GivesAnAlertOverAHiddenWindowAVisibleParent)
{
    QMainWindow visible;
    visible.show();

    soon([&] {
        EXPECT_EQ(sessions.front(), &visible);
        sessions.end(dialog.window);
    });
    sessions.runHidden(dialog.window);
}

TEST_F(ModalSessionsTest, BlocksKeysInOtherWindows)
{
    during(dialog.window, [&] {
        main.window.activateWindow();
        main.line.setFocus();
        press(main.window, Qt::Key_A);
        dialog.window.activateWindow();
        dialog.line.setFocus();
        press(dialog.window, Qt::Key_A);
    });

    EXPECT_EQ(main.line.text(), QString());
    EXPECT_EQ(dialog.line.text(), QStringLiteral("a"));
}

TEST_F(ModalSessionsTest, RestoresTheFocusWhenItIsLostWithTheWindow)
{
    QMainWindow front;
    front.show();
    front.activateWindow();
    auto gone = std::make_unique<QWidget>();
    during(*gone, [&] {
        gone->activateWindow();
        handleEventsUntil([&] { return gone->isActiveWindow(); });
    });

    gone.reset();
    ASSERT_EQ(QGuiApplication::focusWindow(), nullptr);

    handleEventsUntil([&] { return front.isActiveWindow(); });
    EXPECT_TRUE(front.isActiveWindow());
}

TEST_F(ModalSessionsTest, PassesTheFocusOnBeforeTheWindowCloses)
{
    QMainWindow front;
    front.show();
    during(dialog.window, [&] {
        dialog.window.activateWindow();
        handleEventsUntil([&] { return dialog.window.isActiveWindow(); });
    });

    handleEvents();
    EXPECT_TRUE(dialog.window.isVisible());
    EXPECT_TRUE(front.isActiveWindow());
}

TEST_F(ModalSessionsTest, DoesNotTakeTheFocusFromAWindowThatTheUserWentTo)
{
    QMainWindow front;
    front.show();
    inner.window.setProperty("alwaysUsable", true);
    inner.window.show();
    during(dialog.window, [&] {
        inner.window.activateWindow();
        handleEventsUntil([&] { return inner.window.isActiveWindow(); });
    });

    handleEvents();
    EXPECT_TRUE(inner.window.isActiveWindow());
}

TEST_F(ModalSessionsTest, LeavesTheFocusWithTheWindowThatHasIt)
{
    QMainWindow front;
    front.show();
    during(dialog.window, [] {});

    inner.window.show();
    inner.window.activateWindow();
    // The session's own timer was started first, so it fires first.
    bool hasFocusSettled = false;
    QTimer::singleShot(ModalSessions::kFocusDelay, [&] { hasFocusSettled = true; });
    handleEventsUntil([&] { return hasFocusSettled; });
    handleEvents();

    EXPECT_TRUE(inner.window.isActiveWindow());
}

TEST_F(ModalSessionsTest, BlocksMnemonicsOfOtherWindows)
{
    during(dialog.window, [&] {
        main.window.activateWindow();
        handleEvents();
        press(main.window, Qt::Key_P, Qt::AltModifier);
    });
    EXPECT_EQ(main.clicks, 0);

    main.window.activateWindow();
    handleEvents();
    press(main.window, Qt::Key_P, Qt::AltModifier);
    handleEventsUntil([&] { return main.clicks == 1; });
}

TEST_F(ModalSessionsTest, BlocksTheWheelInOtherWindows)
{
    const auto turn = [](QWidget& widget) {
        QWheelEvent event(QPointF(2, 2), widget.mapToGlobal(QPointF(2, 2)), {}, {0, -120}, {}, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&widget, &event);
    };

    during(dialog.window, [&] {
        turn(main.scrollBar);
        turn(dialog.scrollBar);
    });

    EXPECT_EQ(main.scrollBar.value(), 0);
    EXPECT_GT(dialog.scrollBar.value(), 0);
}

TEST_F(ModalSessionsTest, RaisesItsWindowWhenAnotherIsClicked)
{
    during(dialog.window, [&] {
        main.window.activateWindow();
        handleEventsUntil([&] { return main.window.isActiveWindow(); });

        click(main.button);

        handleEventsUntil([&] { return dialog.window.isActiveWindow(); });
        EXPECT_TRUE(dialog.window.isActiveWindow());
    });
    EXPECT_EQ(main.clicks, 0);
}

TEST_F(ModalSessionsTest, Nests)
{
    std::vector<std::string> order;

    during(dialog.window, [&] {
        during(inner.window, [&] {
            click(dialog.button);
            click(inner.button);
            order.emplace_back("inner");
        });
        click(dialog.button);
        click(inner.button);
        order.emplace_back("dialog");
    });

    EXPECT_EQ(order, (std::vector<std::string>{"inner", "dialog"}));
    EXPECT_EQ(dialog.clicks, 1);
    EXPECT_EQ(inner.clicks, 1);
}

TEST_F(ModalSessionsTest, EndsTheInnermostFirst)
{
    std::vector<std::string> order;
    soon([&] {
        soon([&] { sessions.end(); });
        sessions.run(inner.window);
        order.emplace_back("inner");
        sessions.end();
    });

    sessions.run(dialog.window);
    order.emplace_back("dialog");

    EXPECT_EQ(order, (std::vector<std::string>{"inner", "dialog"}));
}

TEST_F(ModalSessionsTest, ReturnsFromAnOuterSessionOnlyAfterTheInnerOne)
{
    std::vector<std::string> order;
    soon([&] {
        soon([&] {
            sessions.end(dialog.window);
            click(dialog.button);
            soon([&] { sessions.end(inner.window); });
        });
        sessions.run(inner.window);
        order.emplace_back("inner");
    });

    sessions.run(dialog.window);
    order.emplace_back("dialog");

    EXPECT_EQ(order, (std::vector<std::string>{"inner", "dialog"}));
    EXPECT_EQ(dialog.clicks, 0);
}

TEST_F(ModalSessionsTest, EndsNothingWhenNoneRuns)
{
    sessions.end();
    sessions.end(dialog.window);

    bool hasRun = false;
    during(dialog.window, [&] {
        click(main.button);
        hasRun = true;
    });
    EXPECT_TRUE(hasRun);
    EXPECT_EQ(main.clicks, 0);
}

TEST_F(ModalSessionsTest, AllowsInputToAWindowThatIsAlwaysUsable)
{
    main.window.setProperty("alwaysUsable", true);

    during(dialog.window, [&] {
        click(main.button);
        click(dialog.button);
    });

    EXPECT_EQ(main.clicks, 1);
    EXPECT_EQ(dialog.clicks, 1);
}

TEST_F(ModalSessionsTest, AllowsPopupsOfItsWindow)
{
    int triggers = 0;
    QMenu menu(&dialog.window);
    QObject::connect(menu.addAction(QStringLiteral("Copy")), &QAction::triggered,
                     [&] { ++triggers; });

    during(dialog.window, [&] {
        menu.popup(dialog.window.mapToGlobal(QPoint()));
        const auto place = menu.actionGeometry(menu.actions().front()).center();
        QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, {}, place);
    });

    EXPECT_EQ(triggers, 1);
}

TEST_F(ModalSessionsTest, ClosesOpenMenus)
{
    QMenu menu(&main.window);
    menu.addAction(QStringLiteral("Copy"));
    menu.popup(main.window.mapToGlobal(QPoint()));

    during(dialog.window, [&] { EXPECT_FALSE(menu.isVisible()); });
}

TEST_F(ModalSessionsTest, AllowsCloseRequests)
{
    during(dialog.window, [&] {
        pressCloseControl(main.window);

        EXPECT_FALSE(main.window.isVisible());
    });
}

TEST_F(ModalSessionsTest, ReleasesTheMouseInAnotherWindow)
{
    QTest::mousePress(
        main.window.windowHandle(), Qt::LeftButton, {},
        main.scrollBar.mapTo(&main.window, main.scrollBar.rect().center() + QPoint(30, 0)));
    ASSERT_NE(main.scrollBar.repeatAction(), QAbstractSlider::SliderNoAction);

    during(dialog.window, [&] {
        // A pressed scroll bar keeps scrolling by a timer.
        EXPECT_EQ(main.scrollBar.repeatAction(), QAbstractSlider::SliderNoAction);
        QTest::mouseRelease(main.window.windowHandle(), Qt::LeftButton);
    });
}

TEST_F(ModalSessionsTest, ClicksNothingWhenItReleasesTheMouse)
{
    QTest::mousePress(main.window.windowHandle(), Qt::LeftButton, {},
                      main.button.mapTo(&main.window, main.button.rect().center()));
    ASSERT_TRUE(main.button.isDown());

    during(dialog.window, [&] {
        EXPECT_FALSE(main.button.isDown());
        QTest::mouseRelease(main.window.windowHandle(), Qt::LeftButton, {},
                            main.button.mapTo(&main.window, main.button.rect().center()));
    });

    EXPECT_EQ(main.clicks, 0);
}

TEST_F(ModalSessionsTest, PlacesItsWindowAboveTheMainWindow)
{
    const auto mainInterface = load("MainWindow");
    mainInterface->window().show();

    during(dialog.window, [&] {
        EXPECT_EQ(dialog.window.windowHandle()->transientParent(),
                  shownWindow(QStringLiteral("MainWindow")).windowHandle());
    });
}

}  // namespace

}  // namespace dunmora::test
