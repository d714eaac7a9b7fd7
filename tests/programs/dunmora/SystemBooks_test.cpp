#include "programs/dunmora/SystemBooks.h"

#include "tests/programs/dunmora/MainWindowTest.h"

#include <algorithm>
#include <cstddef>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;
using Paths = std::vector<std::filesystem::path>;

/// The file is open, and the desktop has two address books.
class SystemBooksTest : public MainWindowTest {
protected:
    SystemBooksTest()
    {
        makeWindow();
        window_->offerSystemBooks("system:", [this] {
            EXPECT_FALSE(application_.isMainThread());
            onList();
            return books_;
        });
        window_->open(file_);
        window_->applicationDidFinishLaunching();
        window_->applicationDidBecomeActive();
        application_.runUntilIdle();
    }

    FakeMenu& menu() { return main_->menu("menuSystemBooks"); }

    void openMenu()
    {
        menu().open();
        application_.runUntilIdle();
    }

    std::size_t listings() const
    {
        return static_cast<std::size_t>(std::count(application_.threads.begin(),
                                                   application_.threads.end(), "ListSystemBooks"));
    }

    std::vector<DesktopBook> books_{{"family-1", "Family", "local", {}, {}, {}},
                                    {"work-2", "Work\n& Co.", "carddav", {}, {}, {}}};
    std::function<void()> onList = [] {};
};

TEST_F(SystemBooksTest, AreListedOnlyWhenTheMenuOpens)
{
    EXPECT_EQ(listings(), 0U);
    EXPECT_EQ(menu().titles(), Lines());
    EXPECT_TRUE(menu().isEnabled);

    openMenu();

    EXPECT_EQ(menu().titles(), (Lines{"Family", "Work & Co."}));
    EXPECT_TRUE(menu().isEnabled);
}

TEST_F(SystemBooksTest, AreListedAgainEachTime)
{
    openMenu();
    books_.pop_back();

    openMenu();

    EXPECT_EQ(menu().titles(), Lines{"Family"});
}

TEST_F(SystemBooksTest, AreListedOnceAtATime)
{
    menu().open();
    menu().open();
    application_.runUntilIdle();

    EXPECT_EQ(listings(), 1U);
    EXPECT_EQ(menu().titles().size(), 2U);
}

TEST_F(SystemBooksTest, AreListedWithoutAJob)
{
    menu().open();

    EXPECT_FALSE(supervised_.isBusy());
    EXPECT_TRUE(main_->command("OnReload").isEnabled);
    EXPECT_TRUE(table().isEnabled);
    application_.runUntilIdle();
}

TEST_F(SystemBooksTest, OpenByTheirName)
{
    openMenu();

    menu().choose(1);
    EXPECT_EQ(title(), "Work & Co. – Dunmora");
    application_.runUntilIdle();

    EXPECT_EQ(opened_, (Paths{file_, "system:work-2"}));
    EXPECT_EQ(table().rows, 2U);
    EXPECT_EQ(alerts(), Lines());
}

TEST_F(SystemBooksTest, AreNotOfferedWhileAJobRuns)
{
    openMenu();

    main_->command("OnReload").use();
    EXPECT_FALSE(menu().isEnabled);
    menu().open();
    application_.runUntilIdle();

    EXPECT_TRUE(menu().isEnabled);
    EXPECT_EQ(listings(), 1U);
}

TEST_F(SystemBooksTest, AreNotOfferedWithoutTheirService)
{
    onList = [] { throw PlatformError("Evolution Data Server is not installed."); };
    openMenu();
    EXPECT_FALSE(menu().isEnabled);
    EXPECT_EQ(alerts(), Lines());

    main_->command("OnReload").use();
    application_.runUntilIdle();
    EXPECT_FALSE(menu().isEnabled);

    onList = [] {};
    openMenu();
    EXPECT_TRUE(menu().isEnabled);
    EXPECT_EQ(menu().titles().size(), 2U);
}

}  // namespace
}  // namespace dunmora::test
