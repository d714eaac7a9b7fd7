#include "adapters/posix/ProcessEnd.h"

#include "adapters/posix/UnfinishedFile.h"

#include <atomic>
#include <cstdlib>
#include <ctime>

#include <pthread.h>
#include <unistd.h>

namespace dunmora {

namespace {

constexpr int kEndSignals[] = {SIGTERM, SIGINT, SIGHUP};  // NOLINT(*-c-arrays)

// How many threads are in unbroken work, and whether the end has come. One word, so that none can
// begin between the look at the number and the end.
constexpr unsigned kEnding = 1U << 31U;
std::atomic<unsigned> work = 0;
static_assert(decltype(work)::is_always_lock_free, "A signal handler may not wait for a lock.");

thread_local int depth = 0;

// The status to end with by a signal; negative: by the signal itself.
constexpr int kBySignal = -1;
std::atomic<int> signalStatus = kBySignal;

/// Waits for the process's end, which another thread brings about.
[[noreturn]] void waitForEnd()
{
    while (true) {
        pause();
    }
}

double seconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    constexpr double kNanosecond = 1e-9;
    return static_cast<double>(now.tv_sec) + kNanosecond * static_cast<double>(now.tv_nsec);
}

/// Lets no more unbroken work begin and waits for what has begun. Returns whether that has ended.
bool stopUnbrokenWork()
{
    constexpr double kPatience = 1;
    constexpr timespec kMoment{0, 1'000'000};
    work |= kEnding;
    const auto end = seconds() + kPatience;
    while (work != kEnding) {
        if (seconds() > end) {
            return false;
        }
        nanosleep(&kMoment, nullptr);
    }
    return true;
}

void putInOrder()
{
    if (stopUnbrokenWork()) {
        UnfinishedFile::takeAllAway();
    }
}

extern "C" void endBySignal(int signal)
{
    const int status = signalStatus;
    if (status != kBySignal) {
        endProcess(status);
    }
    putInOrder();
    // It arrives when this handler returns.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}  // namespace

UnbrokenWork::UnbrokenWork()
{
    // What has begun already goes on to its end.
    if (depth++ > 0) {
        return;
    }
    sigset_t endSignals{};
    sigemptyset(&endSignals);
    for (const int signal : kEndSignals) {
        sigaddset(&endSignals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &endSignals, &signalsBefore_);
    if ((work.fetch_add(1) & kEnding) != 0) {
        --work;
        waitForEnd();
    }
}

UnbrokenWork::~UnbrokenWork()
{
    if (--depth > 0) {
        return;
    }
    --work;
    pthread_sigmask(SIG_SETMASK, &signalsBefore_, nullptr);
}

void endProcess(int status)
{
    putInOrder();
    std::_Exit(status);
}

void endOnSignals(std::optional<int> status)
{
    signalStatus = status.value_or(kBySignal);
    for (const int signal : kEndSignals) {
        if (std::signal(signal, endBySignal) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

}  // namespace dunmora
