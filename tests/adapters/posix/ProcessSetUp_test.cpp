#include "adapters/posix/ProcessSetUp.h"

#include "tests/fakes/ChildProcess.h"
#include "tests/fakes/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <string>

namespace dunmora::test {
namespace {

TEST(ProcessSetUp, KeepsTheNextFileOutOfTheStandardStreams)
{
    const auto answer = inChild([] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);

        occupyStandardStreams();

        return std::to_string(::open("/dev/null", O_RDONLY));
    });

    EXPECT_GT(std::stoi(answer), STDERR_FILENO);
}

TEST(ProcessSetUp, LetsAClosedStreamFailAsBefore)
{
    const auto answer = inChild([] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);

        occupyStandardStreams();

        char byte = 'x';
        return std::to_string(::read(STDIN_FILENO, &byte, 1)) + " " +
               std::to_string(::write(STDOUT_FILENO, &byte, 1));
    });

    EXPECT_EQ(answer, "-1 -1");
}

TEST(ProcessSetUp, LeavesOpenStreamsAlone)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "in";
    write(file, "here");

    const auto answer = inChild([&] {
        dup2(::open(file.c_str(), O_RDONLY), STDIN_FILENO);

        occupyStandardStreams();

        std::array<char, 4> text{};
        return std::string(text.data(),
                           ::read(STDIN_FILENO, text.data(), text.size()) == 4 ? 4 : 0);
    });

    EXPECT_EQ(answer, "here");
}

TEST(ProcessSetUp, MakesAReaderWhoHasGoneAwayAnError)
{
    const auto answer = inChild([]() -> std::string {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            return "no pipe";
        }
        ::close(ends[0]);

        takeWriteSignalsAsErrors();

        return ::write(ends[1], "x", 1) == -1 && errno == EPIPE ? "an error" : "written";
    });

    EXPECT_EQ(answer, "an error");
}

TEST(ProcessSetUp, MakesAFileThatMayNotGrowAnError)
{
    const TemporaryFolder folder;
    const auto answer = inChild([&]() -> std::string {
        const auto file = ::open((folder.path() / "small").c_str(), O_WRONLY | O_CREAT, 0600);
        const rlimit nothing{0, 0};
        setrlimit(RLIMIT_FSIZE, &nothing);

        takeWriteSignalsAsErrors();

        return ::write(file, "x", 1) == -1 && errno == EFBIG ? "an error" : "written";
    });

    EXPECT_EQ(answer, "an error");
}

}  // namespace
}  // namespace dunmora::test
