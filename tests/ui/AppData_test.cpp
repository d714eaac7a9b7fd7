#include "ui/AppData.h"

#include "tests/fakes/DesktopTest.h"
#include "ui/ProgressWindowController.h"

#include <utility>

namespace dunmora::test {
namespace {

class AppDataTest : public DesktopTest {
protected:
    AppData& appData_ = AppData::app();
};

TEST_F(AppDataTest, IsOneInstanceWithoutAProgressWindowBetweenJobs)
{
    EXPECT_EQ(&AppData::app(), &appData_);
    EXPECT_EQ(appData_.progress(), nullptr);
}

TEST_F(AppDataTest, IsTheOnlyOwnerOfTheProgressWindow)
{
    auto progress = ProgressWindowController::init();
    const std::weak_ptr<ProgressWindowController> watched = progress;

    appData_.setProgress(std::move(progress));

    ASSERT_FALSE(watched.expired());
    EXPECT_EQ(appData_.progress(), watched.lock());
}

TEST_F(AppDataTest, ReleasesTheOldProgressWindowForANewOneWithoutClosingIt)
{
    appData_.setProgress(ProgressWindowController::init());
    const std::weak_ptr<ProgressWindowController> old = appData_.progress();
    auto fresh = ProgressWindowController::init();
    log_.clear();

    appData_.setProgress(fresh);

    EXPECT_TRUE(old.expired());
    EXPECT_EQ(appData_.progress(), fresh);
    EXPECT_EQ(calls(), Calls());
}

TEST_F(AppDataTest, ReleasesTheProgressWindowForNullWithoutClosingIt)
{
    appData_.setProgress(ProgressWindowController::init());
    const std::weak_ptr<ProgressWindowController> old = appData_.progress();
    log_.clear();

    appData_.setProgress(nullptr);

    EXPECT_TRUE(old.expired());
    EXPECT_EQ(appData_.progress(), nullptr);
    EXPECT_EQ(calls(), Calls());
}

}  // namespace
}  // namespace dunmora::test
