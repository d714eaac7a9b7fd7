#include "adapters/posix/LockedFile.h"

#include "tests/adapters/posix/FileTest.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include <sys/file.h>
#include <sys/stat.h>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

using LockedFileTest = FileTest;

/// Allows no second attempt.
bool giveUp()
{
    return false;
}

TEST_F(LockedFileTest, HasTheContent)
{
    write(path("book"), "old");

    EXPECT_EQ(LockedFile::open({path("book")}).content().view(), "old");
}

TEST_F(LockedFileTest, AcceptsOnlyTheExpectedContent)
{
    write(path("book"), "old");
    auto file = LockedFile::open({path("book")});

    EXPECT_NO_THROW(file.expectContent({"o", "", "ld"}));
    EXPECT_EQ(file.expected(), (Pieces{"o", "", "ld"}));

    for (const Pieces& other : {Pieces{"olD"}, Pieces{"ol"}, Pieces{"older"}, Pieces{}}) {
        EXPECT_EQ(failureOf([&] { file.expectContent(other); }), changed(path("book")));
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

TEST_F(LockedFileTest, IsRefusedWhenItsNamesHaveBecomeDifferentFiles)
{
    write(path("book"), "old");
    write(path("same"), "old");

    EXPECT_EQ(failureOf([&] {
                  LockedFile::open({path("book"), path("same")});
              }),
              changed(path("book")));
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
    const auto file = LockedFile::openOrCreate(path("a") / "b" / "settings", giveUp);

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

    const auto file = LockedFile::openOrCreate(path("settings"), [&] {
        write(path("new"), "new");
        fs::rename(path("new"), path("settings"));
        flock(previous.number(), LOCK_UN);
        return true;
    });

    EXPECT_EQ(file.content().view(), "new");
}

TEST_F(LockedFileTest, IsNotWaitedForAfterTheLastAttempt)
{
    write(path("settings"), "old");
    const auto holder = LockedFile::open({path("settings")});
    int attempts = 1;

    const auto failure = failureOf(
        [&] { LockedFile::openOrCreate(path("settings"), [&] { return ++attempts <= 3; }); });

    EXPECT_EQ(failure, about(path("settings"), "cannot be changed: another program has locked it. "
                                               "Try again later."));
    EXPECT_EQ(attempts, 4);
}

TEST_F(LockedFileTest, IsNotWaitedForWhenItIsReplacedForever)
{
    write(path("settings"), "old");
    std::optional<LockedFile> holder(LockedFile::open({path("settings")}));
    int replacements = 0;

    const auto failure = failureOf([&] {
        LockedFile::openOrCreate(path("settings"), [&] {
            write(path("new"), "new");
            fs::rename(path("new"), path("settings"));
            holder.emplace(LockedFile::open({path("settings")}));
            return ++replacements < 3;
        });
    });

    EXPECT_NE(failure, kNothingThrown);
    EXPECT_EQ(replacements, 3);
}

TEST(LockAttempts, EndsWhenTheTimeHasPassed)
{
    EXPECT_FALSE(LockedFile::tryAgainFor(0ms)());
    EXPECT_TRUE(LockedFile::tryAgainFor(1h)());

    const auto begin = std::chrono::steady_clock::now();
    const auto tryAgain = LockedFile::tryAgainFor(20ms);
    while (tryAgain()) {}
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms);
}

TEST_F(LockedFileTest, IsRefusedWhenItIsReadOnly)
{
    write(path("settings"), "old");
    ASSERT_EQ(chmod(path("settings").c_str(), 0444), 0);

    EXPECT_NE(failureOf([&] { LockedFile::openOrCreate(path("settings"), giveUp); }),
              kNothingThrown);
    EXPECT_EQ(failureOf([&] { LockedFile::open({path("settings")}); }),
              about(path("settings"), "cannot be changed: it is read-only."));
}

}  // namespace
}  // namespace dunmora::test
