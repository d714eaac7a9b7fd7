#include "tests/fakes/ChildProcess.h"

#include <sys/ptrace.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <stdexcept>
#include <thread>

namespace dunmora::test {

namespace {

std::string outcomeOf(const std::function<std::string()>& body)
{
    try {
        return body();
    } catch (const std::exception& error) {
        return std::string("thrown: ") + error.what();
    }
}

int waitFor(pid_t child)
{
    int status = 0;
    if (waitpid(child, &status, 0) != child) {
        throw std::runtime_error("The child is lost.");
    }
    return status;
}

bool isStopped(int status)
{
    return WIFSTOPPED(status);
}

void killAndWait(pid_t child)
{
    kill(child, SIGKILL);
    while (isStopped(waitFor(child))) {}
}

}  // namespace

std::string inChild(const std::function<std::string()>& body)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("No pipe.");
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        const auto outcome = outcomeOf(body);
        const auto written = ::write(ends[1], outcome.data(), outcome.size());
        // The child must not run the parent's destructors and exit handlers.
        _exit(written == static_cast<ssize_t>(outcome.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::string outcome;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 1; count > 0;) {
        count = read(ends[0], buffer.data(), buffer.size());
        outcome.append(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0U);
    }
    close(ends[0]);
    const int status = waitFor(child);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? outcome : "the child died: " + outcome;
}

End traceChild(const std::function<void()>& body, const std::function<Fate(SystemCall)>& atCall)
{
    constexpr int kNotTraced = 77;
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(kNotTraced);
        }
        raise(SIGSTOP);
        body();
        _exit(0);
    }
    if (!isStopped(waitFor(child))) {
        return End::CannotBeTraced;
    }
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD);
    int signal = 0;
    long number = 0;
    bool isToEnd = false;
    while (true) {
        if (isToEnd) {
            constexpr std::chrono::milliseconds kTimeForTheOthers(1);
            std::this_thread::sleep_for(kTimeForTheOthers);
        }
        if (ptrace(PTRACE_SYSCALL, child, nullptr, signal) != 0 && errno != ESRCH) {
            killAndWait(child);
            return End::CannotBeTraced;
        }
        const int status = waitFor(child);
        if (!isStopped(status)) {
            return WIFSIGNALED(status) ? End::Killed : End::Ended;
        }
        if (WSTOPSIG(status) != (SIGTRAP | 0x80)) {
            signal = WSTOPSIG(status);
            continue;
        }
        signal = 0;
        __ptrace_syscall_info info{};
        if (ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info) <= 0) {
            if (errno == ESRCH) {
                continue;
            }
            killAndWait(child);
            return End::CannotBeTraced;
        }
        const bool isBefore = info.op == PTRACE_SYSCALL_INFO_ENTRY;
        if (isBefore) {
            number = static_cast<long>(info.entry.nr);
        }
        const auto moment = isBefore ? SystemCall::Moment::Before : SystemCall::Moment::After;
        const auto fate = atCall({number, moment});
        if (fate == Fate::Kill) {
            killAndWait(child);
            return End::Killed;
        }
        if (fate == Fate::Terminate) {
            kill(child, SIGTERM);
            isToEnd = true;
        }
    }
}

}  // namespace dunmora::test
