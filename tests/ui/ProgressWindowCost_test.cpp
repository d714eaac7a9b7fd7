#include "base/NotificationCenter.h"
#include "tests/fakes/QuietDesktop.h"
#include "ui/ProgressWindowController.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

/// How often this thread has allocated and freed memory.
thread_local std::size_t allocations = 0;
thread_local std::size_t releases = 0;

void release(void* memory) noexcept
{
    releases += memory == nullptr ? 0U : 1U;
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

// Memory from the sanitizers' version could be freed only by their own delete.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    release(memory);
}

namespace dunmora::test {
namespace {

class ProgressWindowCost : public testing::Test {
protected:
    QuietDesktop desktop_;
};

TEST_F(ProgressWindowCost, AllocatesNothingForAPostWhileAWindowIsOpen)
{
    const auto window = ProgressWindowController::init();
    const Payload payload = std::make_shared<Progress>(Progress{.total = 5, .current = 2});

    const auto before = allocations;
    for (int i = 0; i < 1000; ++i) {
        NotificationCenter::defaultCenter().postNotification(kMsgProgress, nullptr, payload);
    }
    const auto after = allocations;

    EXPECT_EQ(after - before, 0U);
    EXPECT_GT(before, 0U);
    EXPECT_EQ(desktop_.interfaceLoader.bar.redrawsAsked, 1000U);
    EXPECT_EQ(desktop_.interfaceLoader.bar.doubleValue, 2.0);
}

TEST_F(ProgressWindowCost, KeepsNoMemoryOfADestroyedWindow)
{
    // The first one creates objects that live as long as the process.
    ProgressWindowController::init();

    const auto before = allocations - releases;
    ProgressWindowController::init();
    const auto after = allocations - releases;

    EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace dunmora::test
