#include "adapters/posix/Leftover.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/LockedFolder.h"
#include "tests/adapters/posix/FileTest.h"
#include "tests/fakes/ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Names = std::set<std::string>;
using Sentences = std::vector<std::string>;

TEST(TemporaryName, TellsTheNewFileAndTheNameOfTheOldOne)
{
    const auto path = temporaryPath("/home/me/contacts.vcf", {3, 14}, 2);

    EXPECT_EQ(path, "/home/me/.dunmora-3-14-2-contacts.vcf");
    const auto name = TemporaryName::parsed(path.filename().string());
    ASSERT_TRUE(name);
    EXPECT_EQ(name->newFile, (FileIdentity{3, 14}));
    EXPECT_EQ(name->fileName, "contacts.vcf");
    EXPECT_TRUE(name->belongsTo("contacts.vcf"));
    EXPECT_FALSE(name->belongsTo("contacts.vc"));
    EXPECT_FALSE(name->belongsTo("contacts.vcfs"));
}

TEST(TemporaryName, IsShortEnoughForEveryFileSystem)
{
    std::string longName;
    for (int i = 0; i < 85; ++i) {
        longName += "\u20AC";
    }

    const auto name = temporaryPath("/" + longName, {1, 2}, 1).filename().string();

    EXPECT_LT(name.size(), 143U);
    // Whole characters only: a third of 80 bytes is 26 and a part of one.
    EXPECT_EQ(TemporaryName::parsed(name)->fileName, longName.substr(0, 78));
    EXPECT_TRUE(TemporaryName::parsed(name)->belongsTo(longName));
    EXPECT_FALSE(TemporaryName::parsed(name)->belongsTo(longName.substr(0, 75)));
}

TEST(TemporaryName, IsNotAnyHiddenName)
{
    for (const auto* name :
         {"contacts.vcf", ".contacts.vcf", ".dunmora-", ".dunmora-1-2-3", ".dunmora-1-2-3-",
          ".dunmora-1-2-book.vcf", ".dunmora-1-x-3-book.vcf", ".dunmora-new-1-2", "dunmora-1-2-3-b",
          ".dunmora-99999999999999999999999-2-3-book.vcf"}) {
        EXPECT_FALSE(TemporaryName::parsed(name)) << name;
    }
}

class LeftoverTest : public FileTest {
protected:
    /// A new file of ours that has not taken the place of `book`.
    std::filesystem::path unused(unsigned number = 1) const
    {
        write(path("new"), "new");
        auto place = temporaryPath(path("book"), identity(path("new")), number);
        std::filesystem::rename(path("new"), place);
        return place;
    }

    /// An old file that a new one has replaced.
    std::filesystem::path replaced(const std::string& name) const
    {
        write(path(name), "new");
        auto place = temporaryPath(path(name), identity(path(name)), 1);
        write(place, "old");
        return place;
    }

    static FileIdentity identity(const std::filesystem::path& file)
    {
        struct stat status {};
        EXPECT_EQ(lstat(file.c_str(), &status), 0);
        return identityOf(status);
    }

    static std::string interrupted(const std::string& name, const std::filesystem::path& place)
    {
        return "The last change was interrupted. “" + name + "” as it was before is in “" +
               place.string() + "”.";
    }
};

TEST_F(LeftoverTest, OfAnUnusedNewFileIsDeletedAndNotReported)
{
    unused(1);
    unused(2);
    write(path("book"), "old");

    EXPECT_EQ(interruptedChangesIn(folder(), {}), Sentences());
    removeUnusedFiles(folder());

    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(LeftoverTest, OfAnEmptyNewFileIsDeleted)
{
    write(path(std::string(kNewFilePrefix) + "1-1"), "");
    write(path(std::string(kNewFilePrefix) + "1-2"), "somebody's");

    removeUnusedFiles(folder());

    EXPECT_EQ(namesIn(folder()), Names{std::string(kNewFilePrefix) + "1-2"});
}

TEST_F(LeftoverTest, OfAProcessThatStillWorksStays)
{
    const auto place = unused();
    const auto file = openFile(place, O_RDONLY);
    ASSERT_EQ(flock(file.number(), LOCK_SH), 0);

    removeUnusedFiles(folder());

    EXPECT_EQ(contentOf(place), "new");
}

TEST_F(LeftoverTest, OfAnOldFileStaysAndIsReported)
{
    const auto first = replaced("a.vcf");
    const auto second = replaced("b.vcf");

    removeUnusedFiles(folder());

    EXPECT_EQ(contentOf(first), "old");
    EXPECT_EQ(contentOf(second), "old");
    EXPECT_EQ(interruptedChangesIn(folder(), {"b.vcf"}), Sentences{interrupted("b.vcf", second)});
    EXPECT_EQ(interruptedChangesIn(folder(), {}).size(), 2U);
    EXPECT_EQ(interruptedChangesIn(folder(), {"c.vcf"}), Sentences());
}

TEST_F(LeftoverTest, OfARemovedFileStaysAndIsReported)
{
    write(path("book"), "old");
    const auto place = temporaryPath(path("book"), {identity(path("book")).device, 0}, 1);
    std::filesystem::rename(path("book"), place);

    removeUnusedFiles(folder());

    EXPECT_EQ(contentOf(place), "old");
    EXPECT_EQ(interruptedChangesIn(folder(), {"book"}), Sentences{interrupted("book", place)});
}

TEST_F(LeftoverTest, OnARenumberedDeviceStaysAndIsReportedWithDoubt)
{
    write(path("new"), "new");
    auto newFile = identity(path("new"));
    ++newFile.device;
    const auto place = temporaryPath(path("book"), newFile, 1);
    std::filesystem::rename(path("new"), place);

    removeUnusedFiles(folder());

    EXPECT_EQ(contentOf(place), "new");
    EXPECT_EQ(interruptedChangesIn(folder(), {"book"}),
              Sentences{"The last change was interrupted. “" + place.string() +
                        "” may hold “book” as it was before, or what another program has "
                        "written to it."});
}

TEST_F(LeftoverTest, OfARevertedChangeStaysAndIsReportedWithDoubt)
{
    const auto place = temporaryPath(path("book"), {}, 1);
    write(place, "new, with what another program has written");

    removeUnusedFiles(folder());

    EXPECT_TRUE(std::filesystem::exists(place));
    EXPECT_EQ(interruptedChangesIn(folder(), {}).size(), 1U);
}

TEST_F(LeftoverTest, OfARemovedLinkLeadsToThatOfItsFile)
{
    const TemporaryFolder elsewhere;
    const auto file = temporaryPath(elsewhere.path() / "real.vcf", {1, 0}, 1);
    write(file, "old");
    const auto link = temporaryPath(path("link.vcf"), {1, 0}, 1);
    std::filesystem::create_symlink(elsewhere.path() / "real.vcf", link);

    EXPECT_EQ(interruptedChangesIn(folder(), {}),
              (Sentences{interrupted("link.vcf", link), interrupted("real.vcf", file)}));
}

TEST_F(LeftoverTest, OfALinkToItselfIsReportedOnce)
{
    const auto link = temporaryPath(path("link.vcf"), {1, 0}, 1);
    std::filesystem::create_symlink("link.vcf", link);

    EXPECT_EQ(interruptedChangesIn(folder(), {"link.vcf"}),
              Sentences{interrupted("link.vcf", link)});
}

TEST_F(LeftoverTest, AreCountedWhenThereAreThousands)
{
    for (int i = 0; i < 25; ++i) {
        write(temporaryPath(path("book" + std::to_string(i)), {1, 0}, 1), "old");
    }

    const auto sentences = interruptedChangesIn(folder(), {});

    EXPECT_EQ(sentences.size(), 21U);
    EXPECT_EQ(sentences.back(), "5 more such files are in “" + folder().string() +
                                    "”. Their names begin with “.dunmora-”.");
}

TEST_F(LeftoverTest, OfAChangeUnderWayIsNotReported)
{
    const auto place = replaced("book");
    {
        const LockedFolder changing(folder());
        EXPECT_EQ(interruptedChangesIn(folder(), {"book"}), Sentences());
    }

    EXPECT_EQ(interruptedChangesIn(folder(), {"book"}), Sentences{interrupted("book", place)});
}

using LockedFolderTest = FileTest;

TEST_F(LockedFolderTest, IsLockedByOneProcessAtATime)
{
    const LockedFolder locked(folder());
    EXPECT_TRUE(locked.isLocked());

    EXPECT_EQ(inChild([&] { return failureOf([&] { const LockedFolder second(folder()); }); }),
              about(folder(), "is being changed by another program. Try again later."));
}

TEST_F(LockedFolderTest, LosesItsUnusedFilesOnceAtTheLock)
{
    write(path(std::string(kNewFilePrefix) + "1-1"), "");
    LockedFolders folders;

    folders.lock(folder());
    write(path(std::string(kNewFilePrefix) + "1-2"), "");
    folders.lock(folder());

    EXPECT_TRUE(folders.areLocked());
    EXPECT_EQ(namesIn(folder()), Names{std::string(kNewFilePrefix) + "1-2"});
}

}  // namespace
}  // namespace dunmora::test
