#include "adapters/posix/Descriptor.h"

#include "adapters/posix/FileCopy.h"
#include "adapters/posix/LockedFile.h"
#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <cerrno>

namespace dunmora::test {
namespace {

constexpr int kInterruptions = 3;

/// Files and folders are opened, flushed and locked although signals interrupt the system calls.
class InterruptedCallTest : public FileTest {
protected:
    InterruptedCallTest() { write(path("book"), "old"); }
};

TEST_F(InterruptedCallTest, OpensAFile)
{
    const FailingCalls interruptions(Call::Open, EINTR, kInterruptions);

    EXPECT_TRUE(openFile(path("book"), O_RDONLY).isOpen());
    EXPECT_EQ(interruptions.failed(), kInterruptions);
}

TEST_F(InterruptedCallTest, FlushesAFile)
{
    const auto file = openFile(path("book"), O_RDWR);
    const FailingCalls interruptions(Call::Sync, EINTR, kInterruptions);

    EXPECT_TRUE(syncFile(file));
    EXPECT_EQ(interruptions.failed(), kInterruptions);
}

TEST_F(InterruptedCallTest, FlushesAFolder)
{
    for (const auto call : {Call::Open, Call::Sync}) {
        const FailingCalls interruptions(call, EINTR, kInterruptions);

        EXPECT_TRUE(syncFolder(folder()));
        EXPECT_EQ(interruptions.failed(), kInterruptions);
    }
}

TEST_F(InterruptedCallTest, LocksAFile)
{
    const FailingCalls interruptions(Call::Lock, EINTR, kInterruptions);

    EXPECT_EQ(failureOf([&] { LockedFile::open({path("book")}); }), kNothingThrown);
    EXPECT_EQ(interruptions.failed(), kInterruptions);
}

TEST_F(InterruptedCallTest, FailsAfterOtherErrors)
{
    const FailingCalls failure(Call::Sync, EIO, 2);

    EXPECT_FALSE(syncFile(openFile(path("book"), O_RDWR)));
    EXPECT_EQ(errno, EIO);
    EXPECT_FALSE(syncFolder(folder()));
}

}  // namespace
}  // namespace dunmora::test
