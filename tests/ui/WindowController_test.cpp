#include "ui/WindowController.h"

#include "tests/fakes/DesktopTest.h"

namespace dunmora::test {
namespace {

class PanelController final : public WindowController {
public:
    PanelController() : WindowController("Panel") {}

    int windowsLoaded = 0;

private:
    void windowDidLoad(Interface& interface) override
    {
        ++windowsLoaded;
        EXPECT_EQ(window(), &interface.window());
    }
};

class WindowControllerTest : public DesktopTest {
protected:
    PanelController controller_;
};

TEST_F(WindowControllerTest, LoadsNothingBeforeItsWindowIsNeeded)
{
    EXPECT_EQ(calls(), Calls());
    EXPECT_EQ(controller_.windowsLoaded, 0);
}

TEST_F(WindowControllerTest, LoadsItsWindowOnce)
{
    auto* const window = controller_.window();

    EXPECT_EQ(window, &loader_.last->fakeWindow);
    EXPECT_EQ(controller_.window(), window);
    EXPECT_EQ(controller_.windowsLoaded, 1);
    EXPECT_EQ(calls(), Calls{"load Panel"});
}

TEST_F(WindowControllerTest, ShowsAndClosesItsWindow)
{
    controller_.showWindow(this);
    controller_.close();

    EXPECT_EQ(calls(), (Calls{"load Panel", "Panel show", "Panel close"}));
}

TEST_F(WindowControllerTest, TakesTheKeyboardFocusUnlessAskedNotTo)
{
    controller_.showWindow(this);
    EXPECT_EQ(loader_.last->fakeWindow.focus, KeyboardFocus::Take);

    controller_.showWindow(this, KeyboardFocus::Leave);
    EXPECT_EQ(loader_.last->fakeWindow.focus, KeyboardFocus::Leave);
}

TEST_F(WindowControllerTest, DoesNotLoadItsWindowToCloseIt)
{
    controller_.close();

    EXPECT_EQ(calls(), Calls());
}

TEST_F(WindowControllerTest, HasNoWindowAndDoesNothingWhenItsInterfaceIsMissing)
{
    loader_.missing.insert("Panel");

    controller_.showWindow(this);
    controller_.close();

    EXPECT_EQ(controller_.window(), nullptr);
    EXPECT_EQ(controller_.windowsLoaded, 0);
    EXPECT_EQ(loader_.last, nullptr);
}

}  // namespace
}  // namespace dunmora::test
