#include "ui/ShortcutsController.h"

#include "tests/fakes/DesktopTest.h"

#include <string>
#include <vector>

namespace dunmora::test {
namespace {

class ShortcutsControllerTest : public DesktopTest {
protected:
    ShortcutsControllerTest()
    {
        main_.fakeShortcuts = {{"File", "Reload", "Ctrl+R, F5"},
                               {"File", "Quit", "Ctrl+Q"},
                               {"In the Table", "Check or uncheck the selected rows", "Space"}};
    }

    FakeInterface main_{"MainWindow", log_};
    ShortcutsController controller_{main_};
};

TEST_F(ShortcutsControllerTest, ListsTheKeysBelowTheNamesOfTheirGroups)
{
    controller_.showWindow(nullptr);

    std::vector<std::string> shown;
    for (const auto& line : loader_.last->detailsView("lstShortcuts").lines) {
        shown.push_back(line.isHeading ? line.title : line.title + " | " + line.value);
    }
    EXPECT_EQ(shown, (std::vector<std::string>{"File", "Reload | Ctrl+R, F5", "Quit | Ctrl+Q",
                                               "In the Table",
                                               "Check or uncheck the selected rows | Space"}));
}

TEST_F(ShortcutsControllerTest, LetsEachLineBeReadAloud)
{
    controller_.showWindow(nullptr);

    const auto& lines = loader_.last->detailsView("lstShortcuts").lines;
    EXPECT_EQ(lines.at(0).accessibleText, "File");
    EXPECT_EQ(lines.at(1).accessibleText, "Reload: Ctrl+R, F5");
}

TEST_F(ShortcutsControllerTest, ClosesAndShowsTheSameWindowAgain)
{
    controller_.showWindow(nullptr);
    loader_.last->command("OnClose").use();
    EXPECT_FALSE(loader_.last->fakeWindow.isVisible);

    controller_.showWindow(nullptr);
    EXPECT_TRUE(loader_.last->fakeWindow.isVisible);
    EXPECT_EQ(calls().front(), "load ShortcutsWindow");
    EXPECT_EQ(calls().back(), "ShortcutsWindow show");
}

}  // namespace
}  // namespace dunmora::test
