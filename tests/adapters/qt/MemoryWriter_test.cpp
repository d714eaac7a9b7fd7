#include "adapters/qt/MemoryWriter.h"

#include "tests/adapters/qt/EventLoop.h"
#include "tests/fakes/FakeWindowMemory.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>

namespace dunmora::test {
namespace {

using Texts = WindowMemory::Texts;

/// A memory on a disk that hangs until the test lets it go.
class HangingMemory final : public WindowMemory {
public:
    Texts load(std::string_view window) override { return memory_.load(window); }

    void store(std::string_view window, const Texts& texts) override
    {
        std::unique_lock lock(mutex_);
        storingThread_ = std::this_thread::get_id();
        changed_.notify_all();
        changed_.wait(lock, [this] { return !hangs_; });
        memory_.store(window, texts);
    }

    /// Waits until a store hangs, and returns its thread.
    std::thread::id waitForStore()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return storingThread_ != std::thread::id(); });
        return storingThread_;
    }

    void letGo()
    {
        const std::lock_guard guard(mutex_);
        hangs_ = false;
        changed_.notify_all();
    }

    int stores() const { return memory_.stores(); }

private:
    FakeWindowMemory memory_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread::id storingThread_;
    bool hangs_ = true;
};

class MemoryWriterTest : public testing::Test {
protected:
    /// Waits until the memory has these texts.
    void expectStored(const Texts& texts)
    {
        handleEventsUntil([&] { return memory_->load("Window") == texts; });
    }

    std::shared_ptr<HangingMemory> memory_ = std::make_shared<HangingMemory>();
    MemoryWriter writer_{memory_, "Window"};
};

TEST_F(MemoryWriterTest, NeverWaitsForTheDisk)
{
    writer_.write({{"size", "1 2"}});

    EXPECT_NE(memory_->waitForStore(), std::this_thread::get_id());
    EXPECT_EQ(memory_->load("Window"), Texts());
    memory_->letGo();
    expectStored({{"size", "1 2"}});
}

TEST_F(MemoryWriterTest, StoresWhatCameMeanwhileAtOnceAndInItsOrder)
{
    writer_.write({{"size", "1 2"}});
    memory_->waitForStore();
    writer_.write({{"size", "3 4"}, {"place", "0 0"}});
    writer_.write({{"size", "5 6"}});

    memory_->letGo();

    expectStored({{"size", "5 6"}, {"place", "0 0"}});
    EXPECT_EQ(memory_->stores(), 2);
}

TEST_F(MemoryWriterTest, StoresAgainAfterItHasStoredEverything)
{
    memory_->letGo();
    writer_.write({{"size", "1 2"}});
    expectStored({{"size", "1 2"}});

    writer_.write({});
    writer_.write({{"size", "3 4"}});

    expectStored({{"size", "3 4"}});
    EXPECT_EQ(memory_->stores(), 2);
}

TEST_F(MemoryWriterTest, StoresEverythingThoughTheWriterIsDestroyed)
{
    MemoryWriter(memory_, "Window").write({{"size", "1 2"}});

    memory_->letGo();

    expectStored({{"size", "1 2"}});
}

}  // namespace
}  // namespace dunmora::test
