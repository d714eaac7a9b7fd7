#include "adapters/posix/ProcessEnd.h"

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

// How many threads are in unbroken work, and whether the end has come. One word, so that none can
// begin between the look at the number and the end.
constexpr unsigned kEnding = 1U << 31U;
std::atomic<unsigned> work = 0;

thread_local int depth = 0;

// Where the handler passes the number of its signal on to.
std::atomic<int> signals = -1;
static_assert(decltype(signals)::is_always_lock_free, "A signal handler may not wait for a lock.");

/// Waits for the process's end, which another thread brings about.
[[noreturn]] void waitForEnd()
{
    while (true) {
        pause();
    }
}

/// Lets no more unbroken work begin and waits for what has begun. Returns whether that has ended.
bool stopUnbrokenWork()
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::seconds kPatience(1);
    constexpr std::chrono::milliseconds kMoment(1);
    work |= kEnding;
    const auto end = Clock::now() + kPatience;
    while (work != kEnding) {
        if (Clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(kMoment);
    }
    return true;
}

void putInOrder()
{
    if (stopUnbrokenWork()) {
        UnfinishedFile::takeAllAway();
    }
}

/// Does not end the process itself: it may have interrupted a thread that holds what others need to
/// end their work, such as the lock of the memory.
extern "C" void passSignalOn(int signal)
{
    const int error = errno;
    const auto number = static_cast<char>(signal);
    // It fails only where there are thousands of signals already.
    [[maybe_unused]] const auto written = write(signals, &number, 1);
    errno = error;
}

/// Waits for the first signal and ends the process.
[[noreturn]] void endAtSignal(const Descriptor& source, std::optional<int> status)
{
    char signal = 0;
    readSome(source, &signal, 1);
    if (status) {
        endProcess(*status);
    }
    putInOrder();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    // Not reached: nobody keeps that signal from this thread.
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

UnbrokenWork::UnbrokenWork()
{
    // What has begun already goes on to its end.
    if (depth++ > 0) {
        return;
    }
    if ((work.fetch_add(1) & kEnding) != 0) {
        --work;
        waitForEnd();
    }
}

UnbrokenWork::~UnbrokenWork()
{
    if (--depth == 0) {
        --work;
    }
}

void endProcess(int status)
{
    putInOrder();
    std::_Exit(status);
}

void endOnSignals(std::optional<int> status)
{
    // Never closed: a signal may come until the very end.
    const auto& pipe = *new Pipe(openPipe());
    if (!pipe.in.isOpen()) {
        throw std::system_error(errno, std::generic_category());
    }
    signals = pipe.in.number();
    std::thread([&source = pipe.out, status] { endAtSignal(source, status); }).detach();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        if (std::signal(signal, passSignalOn) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

}  // namespace dunmora
