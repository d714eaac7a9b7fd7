#include "update/UpdateMenu.h"

#include "tests/fakes/DesktopTest.h"
#include "update/UpdateController.h"

#include <optional>

namespace dunmora::test {
namespace {

constexpr auto kAutomatic = "AutoCheckForUpdates";

class UpdateMenuTest : public DesktopTest {
protected:
    void makeMenu() { menu_.emplace(main_); }

    FakeCommand& atEveryStart() { return main_.command("OnCheckAtEveryStart"); }
    FakeCheckBox& box() { return updateWindow_->checkBox("ckUpdate"); }
    bool isStoredAsOn() { return platform_.userDefaults.onDisk().at(kAutomatic); }

    FakeInterface main_{"MainWindow", log_};
    std::optional<UpdateMenu> menu_;
};

TEST_F(UpdateMenuTest, IsHiddenInABuildWithoutAnUpdateService)
{
    platform_.bundle.updateHost.reset();

    makeMenu();

    EXPECT_TRUE(main_.command("OnCheckForUpdate").isHidden);
    EXPECT_TRUE(atEveryStart().isHidden);
}

TEST_F(UpdateMenuTest, IsShownInABuildWithAnUpdateService)
{
    makeMenu();

    EXPECT_FALSE(main_.command("OnCheckForUpdate").isHidden);
    EXPECT_FALSE(atEveryStart().isHidden);
}

TEST_F(UpdateMenuTest, ShowsThatTheAutomaticCheckIsOnWhenNothingIsStored)
{
    makeMenu();

    EXPECT_TRUE(atEveryStart().isChecked);
    EXPECT_FALSE(platform_.userDefaults.hasValue(kAutomatic));
}

TEST_F(UpdateMenuTest, ShowsWhetherTheAutomaticCheckIsStoredAsOn)
{
    platform_.userDefaults.setBool(kAutomatic, false);
    makeMenu();
    EXPECT_FALSE(atEveryStart().isChecked);

    platform_.userDefaults.setBool(kAutomatic, true);
    makeMenu();
    EXPECT_TRUE(atEveryStart().isChecked);
}

TEST_F(UpdateMenuTest, TurnsTheAutomaticCheckOffAndOnWithoutSendingOne)
{
    makeMenu();

    atEveryStart().use();
    EXPECT_FALSE(isStoredAsOn());
    EXPECT_FALSE(atEveryStart().isChecked);
    EXPECT_EQ(box().shown, CheckState::Off);

    atEveryStart().use();
    EXPECT_TRUE(isStoredAsOn());
    EXPECT_TRUE(atEveryStart().isChecked);
    EXPECT_EQ(box().shown, CheckState::On);

    EXPECT_TRUE(desktop_.connections.opened.empty());
    EXPECT_FALSE(updateWindow_->fakeWindow.isVisible);
}

TEST_F(UpdateMenuTest, ShowsWhatTheUserSetsInTheUpdateWindow)
{
    makeMenu();

    box().shown = CheckState::Off;
    updateWindow_->command("OnUpdate").use(&box());
    EXPECT_FALSE(atEveryStart().isChecked);

    box().shown = CheckState::On;
    updateWindow_->command("OnUpdate").use(&box());
    EXPECT_TRUE(atEveryStart().isChecked);
}

TEST_F(UpdateMenuTest, IsLeftAloneOnceItIsGone)
{
    makeMenu();
    menu_.reset();

    box().shown = CheckState::Off;
    updateWindow_->command("OnUpdate").use(&box());

    EXPECT_TRUE(atEveryStart().isChecked);
}

}  // namespace
}  // namespace dunmora::test
