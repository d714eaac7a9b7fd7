#include "adapters/eds/module/BoundedCall.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <vector>

namespace dunmora::test {
namespace {

using Clock = BoundedCall<int>::Clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// Work that ignores cancellation and ends only when the test lets it.
class HungWork final {
public:
    BoundedCall<int> call()
    {
        return BoundedCall<int>([end = end_](GCancellable* /*cancellable*/) {
            end->acquire();
            return 1;
        });
    }
    void letGo(std::ptrdiff_t calls) { end_->release(calls); }

private:
    std::shared_ptr<std::counting_semaphore<>> end_ =
        std::make_shared<std::counting_semaphore<>>(0);
};

/// Work that ends when it is cancelled.
BoundedCall<int> cancellableCall(int result)
{
    return BoundedCall<int>([result](GCancellable* cancellable) {
        GPollFD descriptor{};
        g_cancellable_make_pollfd(cancellable, &descriptor);
        g_poll(&descriptor, 1, -1);
        g_cancellable_release_fd(cancellable);
        return result;
    });
}

TEST(BoundedCall, ReturnsAResultThatIsReadyAtOnce)
{
    BoundedCall<int> call([](GCancellable* /*cancellable*/) { return 7; });

    EXPECT_EQ(call.resultBefore(Clock::now() + seconds(10)), 7);
}

TEST(BoundedCall, ThrowsWhatTheWorkThrows)
{
    BoundedCall<int> call(
        [](GCancellable* /*cancellable*/) -> int { throw std::runtime_error("no"); });

    EXPECT_THROW(call.resultBefore(Clock::now() + seconds(10)), std::runtime_error);
}

TEST(BoundedCall, ReturnsTheResultOfWorkThatEndsWhenCancelled)
{
    auto call = cancellableCall(7);

    EXPECT_EQ(call.resultBefore(Clock::now()), 7);
}

TEST(BoundedCall, AbandonsHungWork)
{
    HungWork work;
    auto call = work.call();

    EXPECT_EQ(call.resultBefore(Clock::now()), std::nullopt);
    work.letGo(1);
}

TEST(BoundedCall, AbandonsManyHungCallsAsSoonAsOne)
{
    constexpr int kCalls = 20;
    HungWork work;
    std::vector<BoundedCall<int>> calls;
    calls.reserve(kCalls + 1);
    for (int i = 0; i < kCalls; ++i) {
        calls.push_back(work.call());
    }
    calls.push_back(cancellableCall(7));

    const auto begin = Clock::now();
    const auto results = resultsBefore(begin + milliseconds(50), calls);

    EXPECT_LT(Clock::now() - begin, seconds(2));
    ASSERT_EQ(results.size(), calls.size());
    EXPECT_EQ(results.front(), std::nullopt);
    EXPECT_EQ(results.back(), 7);
    work.letGo(kCalls);
}

}  // namespace
}  // namespace dunmora::test
