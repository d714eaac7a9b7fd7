#include "adapters/posix/FileCreation.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileChanges.h"
#include "adapters/posix/FileMetadata.h"
#include "tests/adapters/posix/FileTest.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

/// Creates “ann.vcf”, which also has the name “also.vcf” and a link.
class FileCreationTest : public FileTest {
protected:
    NewNames names() const
    {
        return {{path("ann.vcf"), path("also.vcf")}, {{path("link.vcf"), "ann.vcf"}}};
    }
    std::unique_ptr<FileCreation> creation(const FileMetadata& metadata = {}) const
    {
        return std::make_unique<FileCreation>(names(), metadata, Pieces{"new ", "content"});
    }
    static void commit(std::unique_ptr<FileCreation> creation)
    {
        FileChanges changes;
        changes.add(std::move(creation), "ann.vcf");
        changes.commit([](std::size_t) {});
    }
};

TEST_F(FileCreationTest, CreatesTheFileUnderAllOfItsNames)
{
    commit(creation());

    EXPECT_EQ(namesIn(folder()), (Names{"also.vcf", "ann.vcf", "link.vcf"}));
    EXPECT_EQ(contentOf(path("ann.vcf")), "new content");
    EXPECT_EQ(inodeOf(path("also.vcf")), inodeOf(path("ann.vcf")));
    EXPECT_EQ(fs::read_symlink(path("link.vcf")), "ann.vcf");
}

/// What another user's process does to a file of that user, who has no other group.
std::string setMetadataAsUser(const FileMetadata& metadata, const fs::path& file)
{
    constexpr uid_t kUser = 1234;
    constexpr gid_t kGroup = 2345;
    const auto descriptor = openFile(file, O_RDONLY);
    EXPECT_EQ(chown(file.c_str(), kUser, kUser), 0);
    const auto group = getegid();
    EXPECT_EQ(setegid(kGroup), 0);
    EXPECT_EQ(seteuid(kUser), 0);
    auto remarks = setMetadata(metadata, descriptor, file);
    EXPECT_EQ(seteuid(0), 0);
    EXPECT_EQ(setegid(group), 0);
    return remarks;
}

TEST_F(FileCreationTest, GivesTheGroupBackWithoutTheOwner)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can give files away.";
    }
    write(path("ann.vcf"), "");

    const auto remarks = setMetadataAsUser({0664, 3456, 2345, {}}, path("ann.vcf"));

    struct stat status {};
    ASSERT_EQ(stat(path("ann.vcf").c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, 2345U);
    EXPECT_EQ(status.st_mode & 07777U, 0664U);
    EXPECT_EQ(remarks, about(path("ann.vcf"), "could not be given its owner again."));
}

TEST_F(FileCreationTest, GivesAnotherGroupNoAccess)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can give files away.";
    }
    write(path("ann.vcf"), "");

    const auto remarks = setMetadataAsUser({0660, 3456, 3456, {}}, path("ann.vcf"));

    EXPECT_EQ(fs::status(path("ann.vcf")).permissions(), fs::perms(0600));
    EXPECT_EQ(remarks, about(path("ann.vcf"), "could not be given its owner and group again. Its "
                                              "new group has no access to it."));
}

TEST_F(FileCreationTest, CreatesNothingBeforeItIsApplied)
{
    {
        const auto prepared = creation();

        EXPECT_EQ(prepared->newFile().content().view(), "new content");
        EXPECT_FALSE(fs::exists(path("ann.vcf")));
    }
    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(FileCreationTest, SetsTheMetadata)
{
    FileMetadata metadata;
    metadata.mode = 0640;
    metadata.attributes = std::vector<FileAttribute>{{"user.note", "from Ben"}};

    auto prepared = creation(metadata);
    const auto remarks = prepared->remarks();
    commit(std::move(prepared));

    struct stat status {};
    ASSERT_EQ(stat(path("ann.vcf").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    std::array<char, 20> value{};
    const auto size = getxattr(path("ann.vcf").c_str(), "user.note", value.data(), value.size());
    if (size < 0) {
        EXPECT_NE(remarks.find("extended attributes"), std::string::npos) << remarks;
    } else {
        EXPECT_EQ(remarks, "");
        EXPECT_EQ(std::string(value.data(), static_cast<std::size_t>(size)), "from Ben");
    }
}

TEST_F(FileCreationTest, ReportsAnAttributeThatCannotBeSet)
{
    FileMetadata metadata;
    metadata.attributes = std::vector<FileAttribute>{{"unknown.note", "from Ben"}};

    EXPECT_EQ(creation(metadata)->remarks(),
              "“" + path("ann.vcf").string() +
                  "” could not be given its extended attributes again.");
}

TEST_F(FileCreationTest, LeavesAFileThatHasOneOfTheNames)
{
    for (const auto* name : {"ann.vcf", "also.vcf", "link.vcf"}) {
        write(path(name), "another file");

        EXPECT_EQ(failureOf([&] { commit(creation()); }),
                  about(path(name), "cannot be created: File exists."));

        EXPECT_EQ(namesIn(folder()), Names{name});
        EXPECT_EQ(contentOf(path(name)), "another file");
        fs::remove(path(name));
    }
}

TEST_F(FileCreationTest, LeavesAFileThatTakesANameAtTheLastMoment)
{
    for (const auto* name : {"ann.vcf", "also.vcf", "link.vcf"}) {
        {
            const auto prepared = creation();
            prepared->checkUnchanged();
            write(path(name), "another file");

            EXPECT_EQ(failureOf([&] { prepared->apply(); }),
                      about(path(name), "cannot be created: File exists."));
            EXPECT_EQ(prepared->revert(), "");
            EXPECT_TRUE(prepared->changedPaths().empty());
        }
        EXPECT_EQ(namesIn(folder()), Names{name});
        EXPECT_EQ(contentOf(path(name)), "another file");
        fs::remove(path(name));
    }
}

TEST_F(FileCreationTest, RemovesWhatItCreatedWhenReverted)
{
    {
        const auto prepared = creation();
        prepared->apply();

        EXPECT_EQ(prepared->revert(), "");

        EXPECT_TRUE(prepared->changedPaths().empty());
    }
    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(FileCreationTest, KeepsWhatOthersHaveWrittenWhenReverted)
{
    const auto prepared = creation();
    prepared->apply();
    write(path("ann.vcf"), "by another program");

    EXPECT_NE(prepared->revert(), "");

    EXPECT_EQ(contentOf(path("ann.vcf")), "by another program");
    EXPECT_FALSE(prepared->changedPaths().empty());
}

TEST_F(FileCreationTest, KeepsAFileThatHasReplacedTheNewOneWhenReverted)
{
    const auto prepared = creation();
    prepared->apply();
    for (const auto* name : {"ann.vcf", "link.vcf"}) {
        write(path("other"), "by another program");
        fs::rename(path("other"), path(name));
    }

    EXPECT_NE(prepared->revert(), "");

    EXPECT_EQ(namesIn(folder()), (Names{"ann.vcf", "link.vcf"}));
    EXPECT_EQ(contentOf(path("ann.vcf")), "by another program");
    EXPECT_EQ(contentOf(path("link.vcf")), "by another program");
}

TEST_F(FileCreationTest, RevertsWhatOthersHaveRemoved)
{
    const auto prepared = creation();
    prepared->apply();
    fs::remove(path("ann.vcf"));
    fs::remove(path("link.vcf"));

    EXPECT_EQ(prepared->revert(), "");

    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(FileCreationTest, CreatesTheFileWithClosedFiles)
{
    auto prepared = creation();
    prepared->closeFiles();

    commit(std::move(prepared));

    EXPECT_EQ(namesIn(folder()), (Names{"also.vcf", "ann.vcf", "link.vcf"}));
    EXPECT_EQ(contentOf(path("also.vcf")), "new content");
}

TEST_F(FileCreationTest, NamesTheFileWhoseFolderIsMissing)
{
    const NewNames missing{{path("missing") / "ann.vcf"}, {}};

    EXPECT_EQ(failureOf([&] { FileCreation(missing, {}, {"content"}); }),
              about(path("missing") / "ann.vcf", "cannot be created: No such file or directory."));
}

}  // namespace
}  // namespace dunmora::test
