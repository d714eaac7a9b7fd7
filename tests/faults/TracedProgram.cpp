#include "tests/faults/TracedProgram.h"

#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <stdexcept>

namespace dunmora::test {

namespace {

constexpr int kCannotTrace = 126;

#ifdef __x86_64__
using Registers = user_regs_struct;

constexpr bool kCanChangeCalls = true;

void change(pid_t process, const auto& how)
{
    Registers registers{};
    if (ptrace(PTRACE_GETREGS, process, nullptr, &registers) == 0) {
        how(registers);
        ptrace(PTRACE_SETREGS, process, nullptr, &registers);
    }
}

void setNumber(pid_t process, std::uint64_t number)
{
    change(process, [&](Registers& registers) { registers.orig_rax = number; });
}

void setThirdArgument(pid_t process, std::uint64_t value)
{
    change(process, [&](Registers& registers) { registers.rdx = value; });
}

void setResult(pid_t process, std::int64_t value)
{
    change(process,
           [&](Registers& registers) { registers.rax = static_cast<std::uint64_t>(value); });
}
#else
constexpr bool kCanChangeCalls = false;

void setNumber(pid_t, std::uint64_t) {}
void setThirdArgument(pid_t, std::uint64_t) {}
void setResult(pid_t, std::int64_t) {}
#endif

[[noreturn]] void execute(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0) {
        raise(SIGSTOP);
        execv(arguments.front(), arguments.data());
    }
    _exit(kCannotTrace);
}

}  // namespace

TracedProgram::TracedProgram(const std::vector<std::string>& command)
{
    process_ = fork();
    if (process_ == 0) {
        execute(command);
    }
    int status = 0;
    if (process_ < 0 || waitpid(process_, &status, 0) != process_) {
        throw std::runtime_error("The program could not be started.");
    }
    canTrace_ = kCanChangeCalls && WIFSTOPPED(status) &&
                ptrace(PTRACE_SETOPTIONS, process_, nullptr,
                       PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEEXEC) == 0;
    if (!canTrace_ && WIFSTOPPED(status)) {
        kill();
    }
}

/// Continues to the beginning or the end of a system call. Returns false when the program has
/// ended.
bool TracedProgram::continueToStop()
{
    int signal = 0;
    while (true) {
        ptrace(PTRACE_SYSCALL, process_, nullptr, signal);
        int status = 0;
        if (waitpid(process_, &status, 0) != process_) {
            throw std::runtime_error("The program is lost.");
        }
        if (WIFEXITED(status)) {
            end_ = "exit " + std::to_string(WEXITSTATUS(status));
            return false;
        }
        if (WIFSIGNALED(status)) {
            end_ = "signal " + std::to_string(WTERMSIG(status));
            return false;
        }
        if (WSTOPSIG(status) == (SIGTRAP | 0x80)) {
            return true;
        }
        const bool isEvent = status >> 16 != 0;
        signal = isEvent ? 0 : WSTOPSIG(status);
    }
}

std::optional<StartedCall> TracedProgram::nextCall()
{
    if (isInCall_ && !finishCall()) {
        return std::nullopt;
    }
    if (!continueToStop()) {
        return std::nullopt;
    }
    isInCall_ = true;
    __ptrace_syscall_info info{};
    ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info);
    StartedCall call{info.entry.nr, {}};
    std::copy(std::begin(info.entry.args), std::end(info.entry.args), call.arguments.begin());
    return call;
}

void TracedProgram::setSize(const StartedCall& call, std::uint64_t size) const
{
    setThirdArgument(process_, std::min(size, call.arguments[2]));
}

void TracedProgram::failCall(int error)
{
    setNumber(process_, static_cast<std::uint64_t>(-1));
    if (finishCall()) {
        setError(error);
    }
}

std::optional<long> TracedProgram::finishCall()
{
    isInCall_ = false;
    if (!continueToStop()) {
        return std::nullopt;
    }
    __ptrace_syscall_info info{};
    ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info);
    return static_cast<long>(info.exit.rval);
}

void TracedProgram::setError(int error) const
{
    setResult(process_, -error);
}

void TracedProgram::kill()
{
    ::kill(process_, SIGKILL);
    int status = 0;
    do {
        waitpid(process_, &status, 0);
    } while (WIFSTOPPED(status));
    end_ = "signal " + std::to_string(SIGKILL);
}

}  // namespace dunmora::test
