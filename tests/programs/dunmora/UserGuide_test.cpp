#include "programs/dunmora/UserGuide.h"

#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

class UserGuideTest : public testing::Test {
protected:
    UserGuideTest() { std::filesystem::create_directories(programs_); }

    void makeGuide(const std::filesystem::path& folder) const
    {
        std::filesystem::create_directories(folder);
        write(folder / "index.html", "<title>Help</title>");
    }

    const std::vector<std::filesystem::path>& opened() const
    {
        return platform_.workspace.openedLocalPages;
    }

    TemporaryFolder folder_;
    std::filesystem::path programs_ = folder_.path() / "bin";
    std::filesystem::path installed_ = folder_.path() / "share/doc/guide";
    FakePlatform platform_;
    UserGuide guide_{programs_, "../share/doc/guide"};
};

TEST_F(UserGuideTest, OpensTheFirstPageOfTheInstalledGuide)
{
    makeGuide(installed_);

    guide_.open();

    EXPECT_EQ(opened(), std::vector{installed_ / "index.html"});
    EXPECT_TRUE(platform_.alert.shown.empty());
}

TEST_F(UserGuideTest, OpensTheGuideBesideAProgramThatIsNotInstalled)
{
    makeGuide(programs_ / "guide");

    guide_.open();

    EXPECT_EQ(opened(), std::vector{programs_ / "guide/index.html"});
}

TEST_F(UserGuideTest, PrefersTheInstalledGuide)
{
    makeGuide(installed_);
    makeGuide(programs_ / "guide");

    guide_.open();

    EXPECT_EQ(opened(), std::vector{installed_ / "index.html"});
}

TEST_F(UserGuideTest, SaysWhereItIsMissing)
{
    // Pages without the first one.
    std::filesystem::create_directories(installed_);

    guide_.open();

    EXPECT_TRUE(opened().empty());
    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    EXPECT_EQ(platform_.alert.shown.front().messageText,
              "The user guide is not installed. It would be in “" + installed_.string() + "”.");
    EXPECT_EQ(platform_.alert.shown.front().style, AlertStyle::Failure);
}

TEST_F(UserGuideTest, SaysItOnceHoweverOftenTheUserPressesTheKey)
{
    platform_.alert.onRunModal = [this](const AlertContent& /*content*/) {
        if (platform_.alert.shown.size() < 3) {
            guide_.open();
        }
        return Alert::kDefaultButton;
    };

    guide_.open();
    EXPECT_EQ(platform_.alert.shown.size(), 1U);

    guide_.open();
    EXPECT_EQ(platform_.alert.shown.size(), 2U);
}

TEST_F(UserGuideTest, SaysThatThereIsNoBrowser)
{
    makeGuide(installed_);
    platform_.workspace.hasBrowser = false;

    guide_.open();

    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    EXPECT_EQ(platform_.alert.shown.front().messageText,
              "“" + (installed_ / "index.html").string() +
                  "” cannot be opened: no web browser could be started.");
}

}  // namespace
}  // namespace dunmora::test
