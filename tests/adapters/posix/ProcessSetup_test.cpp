#include "adapters/posix/ProcessSetup.h"

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

TEST(ProcessSetup, KeepsTheNextFileOffTheStandardStreams)
{
    const auto result = inChild([] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);

        reserveStandardStreams();

        return std::to_string(::open("/dev/null", O_RDONLY));
    });

    EXPECT_GT(std::stoi(result), STDERR_FILENO);
}

TEST(ProcessSetup, LetsClosedStreamsStillFail)
{
    const auto result = inChild([] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);

        reserveStandardStreams();

        char byte = 'x';
        return std::to_string(::read(STDIN_FILENO, &byte, 1)) + " " +
               std::to_string(::write(STDOUT_FILENO, &byte, 1));
    });

    EXPECT_EQ(result, "-1 -1");
}

TEST(ProcessSetup, LeavesOpenStreamsAlone)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "in";
    write(file, "here");

    const auto result = inChild([&] {
        dup2(::open(file.c_str(), O_RDONLY), STDIN_FILENO);

        reserveStandardStreams();

        std::array<char, 4> text{};
        return std::string(text.data(),
                           ::read(STDIN_FILENO, text.data(), text.size()) == 4 ? 4 : 0);
    });

    EXPECT_EQ(result, "here");
}

TEST(ProcessSetup, TurnsAClosedPipeIntoAnError)
{
    const auto result = inChild([]() -> std::string {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            return "no pipe";
        }
        ::close(ends[0]);

        ignoreWriteSignals();

        return ::write(ends[1], "x", 1) == -1 && errno == EPIPE ? "an error" : "written";
    });

    EXPECT_EQ(result, "an error");
}

TEST(ProcessSetup, TurnsAFileSizeLimitIntoAnError)
{
    const TemporaryFolder folder;
    const auto result = inChild([&]() -> std::string {
        const auto file = ::open((folder.path() / "small").c_str(), O_WRONLY | O_CREAT, 0600);
        const rlimit nothing{0, 0};
        setrlimit(RLIMIT_FSIZE, &nothing);

        ignoreWriteSignals();

        return ::write(file, "x", 1) == -1 && errno == EFBIG ? "an error" : "written";
    });

    EXPECT_EQ(result, "an error");
}

}  // namespace
}  // namespace dunmora::test
