#include "adapters/posix/ProcessShutdown.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/UnfinishedFile.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <thread>

#include <unistd.h>

namespace dunmora {

namespace {

// The number of threads that hold an inhibitor, and a flag for the exit. They share one word, so
// that no thread can take an inhibitor between the check of the number and the exit.
constexpr unsigned kExiting = 1U << 31U;
std::atomic<unsigned> inhibitors = 0;

// How often the work has advanced.
std::atomic<unsigned> progress = 0;

thread_local int depth = 0;

// The pipe that the signal handler writes the signal's number to.
std::atomic<int> signalPipe = -1;
static_assert(decltype(signalPipe)::is_always_lock_free, "A signal handler must not take a lock.");

/// Blocks until another thread exits the process.
[[noreturn]] void waitForExit()
{
    while (true) {
        pause();
    }
}

/// Blocks new inhibitors and waits for those that exist. Returns false on timeout.
bool waitForInhibitors()
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::seconds kTimeout(1);
    constexpr std::chrono::milliseconds kInterval(1);
    inhibitors |= kExiting;
    auto end = Clock::now() + kTimeout;
    auto seen = progress.load();
    while (inhibitors != kExiting) {
        if (const auto now = progress.load(); now != seen) {
            seen = now;
            end = Clock::now() + kTimeout;
        }
        if (Clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(kInterval);
    }
    return true;
}

void cleanUpFiles()
{
    if (waitForInhibitors()) {
        UnfinishedFile::removeAll();
    }
}

/// Only forwards the signal to the waiting thread. Exiting here could deadlock, because the
/// interrupted thread may hold a lock, such as the allocator's.
extern "C" void forwardSignal(int signal)
{
    const int error = errno;
    const auto number = static_cast<char>(signal);
    // Fails only when the pipe is full of signals already.
    [[maybe_unused]] const auto written = write(signalPipe, &number, 1);
    errno = error;
}

/// Waits for the first signal and exits.
[[noreturn]] void exitAtSignal(const Descriptor& source, std::optional<int> status)
{
    char signal = 0;
    readSome(source, &signal, 1);
    if (status) {
        exitProcess(*status);
    }
    cleanUpFiles();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    // Not reached: no thread blocks the signal.
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

ShutdownInhibitor::ShutdownInhibitor()
{
    // A nested one must not block: the exit waits for the outer one.
    if (depth++ > 0) {
        return;
    }
    if ((inhibitors.fetch_add(1) & kExiting) != 0) {
        --inhibitors;
        waitForExit();
    }
}

ShutdownInhibitor::~ShutdownInhibitor()
{
    if (--depth == 0) {
        --inhibitors;
    }
}

void ShutdownInhibitor::reportProgress()
{
    ++progress;
}

void exitProcess(int status)
{
    cleanUpFiles();
    std::_Exit(status);
}

void exitOnSignals(std::optional<int> status)
{
    // Never closed: a signal may arrive at any time.
    const auto& pipe = *new Pipe(openPipe());
    if (!pipe.in.isOpen()) {
        throw std::system_error(errno, std::generic_category());
    }
    signalPipe = pipe.in.number();
    std::thread([&source = pipe.out, status] { exitAtSignal(source, status); }).detach();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        if (std::signal(signal, forwardSignal) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

}  // namespace dunmora
