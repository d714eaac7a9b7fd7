#include "adapters/posix/NewFile.h"

#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/posix/FileTest.h"
#include "tests/fakes/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <string>

#include <sys/syscall.h>

namespace dunmora::test {
namespace {

class NewFileTest : public FileTest {
protected:
    std::filesystem::path file() const { return path("backup.vcf"); }
};

TEST_F(NewFileTest, HasTheContent)
{
    writeNewFile(file(), {"one\r\n", "two"});

    EXPECT_EQ(contentOf(file()), "one\r\ntwo");
    EXPECT_EQ(namesIn(folder()), (std::set<std::string>{"backup.vcf"}));
}

TEST_F(NewFileTest, IsFlushedToDiskWithItsFolder)
{
    int flushes = 0;
    const auto end = traceChild(
        [&] { writeNewFile(file(), {"one"}); },
        [&](SystemCall call) {
            flushes += call.number == SYS_fsync && call.moment == SystemCall::Moment::After ? 1 : 0;
            return Fate::Continue;
        });
    if (end == End::CannotBeTraced) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(flushes, 2);
}

TEST_F(NewFileTest, IsForItsOwnerOnly)
{
    writeNewFile(file(), {"one"});

    EXPECT_EQ(std::filesystem::status(file()).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(NewFileTest, ReplacesNeitherAnExistingFileNorABrokenLink)
{
    write(file(), "precious");
    EXPECT_EQ(failureOf([&] { writeNewFile(file(), {"new"}); }),
              about(file(), "cannot be created: File exists."));
    EXPECT_EQ(contentOf(file()), "precious");

    std::filesystem::remove(file());
    std::filesystem::create_symlink(folder() / "nowhere", file());
    EXPECT_EQ(failureOf([&] { writeNewFile(file(), {"new"}); }),
              about(file(), "cannot be created: File exists."));
    EXPECT_EQ(namesIn(folder()), (std::set<std::string>{"backup.vcf"}));
}

TEST_F(NewFileTest, FailsAndLeavesNothingWhenItsStatusCannotBeRead)
{
    const FailingCalls calls(Call::Status, EIO);

    EXPECT_EQ(failureOf([&] { writeNewFile(file(), {"one"}); }),
              about(file(), "cannot be created: Input/output error."));
    EXPECT_EQ(namesIn(folder()), std::set<std::string>());
}

TEST_F(NewFileTest, ReportsWhereItCannotBeCreated)
{
    const auto nowhere = folder() / "none" / "backup.vcf";

    EXPECT_EQ(failureOf([&] { writeNewFile(nowhere, {"new"}); }),
              about(nowhere, "cannot be created: No such file or directory."));
    EXPECT_EQ(failureOf([&] { writeNewFile("", {"new"}); }),
              about("", "cannot be created: No such file or directory."));
}

}  // namespace
}  // namespace dunmora::test
