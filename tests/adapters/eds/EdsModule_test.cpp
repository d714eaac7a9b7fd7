#include "adapters/eds/EdsModule.h"

#include "tests/adapters/eds/Deleting.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kSomebody = 12345;
constexpr gid_t kSomeGroup = 12346;

TEST(EdsModule, IsFoundFromTheFolderOfTheProgramWhereverThatIs)
{
    EXPECT_EQ(moduleOf("/usr/bin/dunmora"), "/usr/lib/multiarch/dunmora/dunmora-eds.so");
    EXPECT_EQ(moduleOf("/opt/some place/bin/dunmora-cli"),
              "/opt/some place/lib/multiarch/dunmora/dunmora-eds.so");
}

TEST(EdsModule, IsNotFoundFromTheCurrentFolder)
{
    EXPECT_EQ(moduleOf(""), "");
    EXPECT_EQ(moduleOf("dunmora"), "");
    EXPECT_EQ(moduleOf("bin/dunmora"), "");
}

/// A program and its module with the modes that a build with umask 022 gives them.
class EdsModuleTest : public testing::Test {
protected:
    EdsModuleTest()
    {
        fs::create_directory(place());
        write(program(), "");
        write(module(), "");
        for (const auto& path : {place(), program(), module()}) {
            allow(path, 0755);
        }
    }

    fs::path place() const { return folder_.path() / "bin"; }
    fs::path program() const { return place() / "dunmora"; }
    fs::path module() const { return place() / "module.so"; }

    static void allow(const fs::path& path, mode_t mode)
    {
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
    }

    static void give(const fs::path& path, uid_t user, gid_t group)
    {
        EXPECT_EQ(chown(path.c_str(), user, group), 0);
    }

    std::string failure() const
    {
        return failureOf([&] { checkModule(module(), program()); });
    }

    static std::string refused(const fs::path& path, const std::string& reason)
    {
        return "The desktop's address books cannot be opened: Dunmora's module for them is not "
               "loaded, because “" +
               path.string() + "” " + reason + ".";
    }

    const TemporaryFolder folder_;
};

TEST_F(EdsModuleTest, IsTrustedWhenOnlyTheProgramsOwnerCanWriteIt)
{
    EXPECT_EQ(failure(), "");
}

TEST_F(EdsModuleTest, IsRefusedWhenEverybodyCanWriteItOrItsFolder)
{
    for (const auto& path : {place(), module()}) {
        for (const mode_t mode : {0757U, 0777U, 01777U}) {
            allow(path, mode);

            EXPECT_EQ(failure(), refused(path, "can be changed by other users"));
        }
        allow(path, 0755);
    }
}

TEST_F(EdsModuleTest, IsTrustedWithAGroupOnlyIfThatCanWriteTheProgram)
{
    for (const auto& path : {place(), module()}) {
        allow(path, 0775);

        EXPECT_EQ(failure(), refused(path, "can be changed by other users"));
        allow(program(), 0775);
        EXPECT_EQ(failure(), "");
        if (geteuid() == 0) {
            give(path, 0, kSomeGroup);
            EXPECT_EQ(failure(), refused(path, "can be changed by other users"));
            give(path, 0, getegid());
        }
        allow(path, 0755);
        allow(program(), 0755);
    }
}

TEST_F(EdsModuleTest, IsRefusedWhenItOrItsFolderBelongsToAnotherUser)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can give a file away.";
    }
    for (const auto& path : {place(), module()}) {
        give(path, kSomebody, kSomeGroup);

        EXPECT_EQ(failure(), refused(path, "belongs to another user"));

        give(path, 0, 0);
    }
}

TEST_F(EdsModuleTest, IsTrustedWhenItBelongsToRootOrToTheProgramsOwner)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can give a file away.";
    }
    give(program(), kSomebody, kSomeGroup);
    EXPECT_EQ(failure(), "");
    give(place(), kSomebody, kSomeGroup);
    EXPECT_EQ(failure(), "");
    give(module(), kSomebody, kSomeGroup);
    EXPECT_EQ(failure(), "");
}

TEST_F(EdsModuleTest, IsRefusedWhenItIsALink)
{
    fs::rename(module(), folder_.path() / "elsewhere.so");
    fs::create_symlink(folder_.path() / "elsewhere.so", module());

    EXPECT_EQ(failure(), refused(module(), "is not a file"));
}

TEST_F(EdsModuleTest, IsRefusedWhenItCannotBeChecked)
{
    fs::remove(module());
    EXPECT_EQ(failure(), refused(module(), "cannot be checked: No such file or directory"));

    fs::remove(program());
    EXPECT_EQ(failure(), refused(program(), "cannot be checked: No such file or directory"));
}

}  // namespace
}  // namespace dunmora::test
