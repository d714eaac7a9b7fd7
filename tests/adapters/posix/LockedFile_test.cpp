#include "adapters/posix/LockedFile.h"

#include "tests/adapters/posix/FileTest.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <sstream>
#include <string>
#include <thread>

#include <sys/file.h>
#include <sys/stat.h>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class LockedFileTest : public FileTest {
protected:
    /// Returns when a thread waits for the lock of this file, as /proc/locks shows.
    static void waitForBlockedLock(const fs::path& file)
    {
        const auto inode = ":" + std::to_string(inodeOf(file)) + " ";
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (std::chrono::steady_clock::now() < end) {
            std::istringstream locks(contentOf("/proc/locks"));
            for (std::string line; std::getline(locks, line);) {
                if (line.find("->") != std::string::npos && line.find(inode) != std::string::npos) {
                    return;
                }
            }
            std::this_thread::yield();
        }
        FAIL() << "no thread waits for the lock";
    }
};

TEST_F(LockedFileTest, HasTheContent)
{
    write(path("book"), "old");

    EXPECT_EQ(LockedFile::open({path("book")}).content().view(), "old");
}

TEST_F(LockedFileTest, AcceptsOnlyTheExpectedContent)
{
    write(path("book"), "old");
    const auto file = LockedFile::open({path("book")});

    EXPECT_NO_THROW(file.checkContent({"o", "", "ld"}));

    for (const Pieces& other : {Pieces{"olD"}, Pieces{"ol"}, Pieces{"older"}, Pieces{}}) {
        EXPECT_EQ(failureOf([&] { file.checkContent(other); }), changed(path("book")));
    }
}

TEST_F(LockedFileTest, CannotBeLockedTwice)
{
    write(path("book"), "old");
    const auto file = LockedFile::open({path("book")});

    EXPECT_EQ(
        failureOf([&] { LockedFile::open({path("book")}); }),
        about(path("book"), "cannot be changed: another program has locked it. Try again later."));
}

TEST_F(LockedFileTest, SeparatesLinksFromTheFileItself)
{
    write(path("book"), "old");
    fs::create_hard_link(path("book"), path("same"));
    fs::create_symlink("book", path("link"));

    const auto file = LockedFile::open({path("link"), path("book"), path("same")});

    EXPECT_EQ(file.name(), path("link"));
    EXPECT_EQ(file.links(), LockedFile::Paths{path("link")});
    EXPECT_EQ(file.targets(), (LockedFile::Paths{path("book"), path("same")}));
}

TEST_F(LockedFileTest, DetectsAChangeUnderEachName)
{
    write(path("book"), "old");
    fs::create_hard_link(path("book"), path("same"));
    const auto file = LockedFile::open({path("book"), path("same")});
    EXPECT_NO_THROW(file.checkUnchanged());

    write(path("new"), "old");
    fs::rename(path("new"), path("same"));

    EXPECT_EQ(failureOf([&] { file.checkUnchanged(); }), changed(path("book")));
}

TEST_F(LockedFileTest, IsCreatedForTheOwnerAloneWithItsFolders)
{
    const auto file = LockedFile::openOrCreate(path("a") / "b" / "settings");

    EXPECT_EQ(file.content().view(), "");
    EXPECT_EQ(fs::status(path("a")).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(path("a") / "b").permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(path("a") / "b" / "settings").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(LockedFileTest, IsTheReplacementWhenThePreviousHolderReplacedTheFile)
{
    write(path("settings"), "old");
    const auto previous = openFile(path("settings"), O_RDWR);
    ASSERT_EQ(flock(previous.number(), LOCK_EX), 0);

    auto waiting = std::async(std::launch::async, [&] {
        return std::string(LockedFile::openOrCreate(path("settings")).content().view());
    });
    waitForBlockedLock(path("settings"));
    write(path("new"), "new");
    fs::rename(path("new"), path("settings"));
    flock(previous.number(), LOCK_UN);

    EXPECT_EQ(waiting.get(), "new");
}

TEST_F(LockedFileTest, IsRefusedWhenItIsReadOnly)
{
    write(path("settings"), "old");
    ASSERT_EQ(chmod(path("settings").c_str(), 0444), 0);

    EXPECT_NE(failureOf([&] { LockedFile::openOrCreate(path("settings")); }), kNothingThrown);
    EXPECT_EQ(failureOf([&] { LockedFile::open({path("settings")}); }),
              about(path("settings"), "cannot be changed: it is read-only."));
}

}  // namespace
}  // namespace dunmora::test
