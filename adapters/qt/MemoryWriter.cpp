#include "adapters/qt/MemoryWriter.h"

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace dunmora {

/// The texts that wait to be stored.
class MemoryWriter::Queue final {
public:
    Queue(std::shared_ptr<WindowMemory> memory, std::string window)
        : memory_(std::move(memory)), window_(std::move(window))
    {
    }

    /// Returns whether the caller has to start a thread that stores everything.
    bool add(const WindowMemory::Texts& texts)
    {
        const std::lock_guard guard(mutex_);
        for (const auto& [key, text] : texts) {
            waiting_.insert_or_assign(key, text);
        }
        return !std::exchange(isStoring_, true);
    }

    void storeAll()
    {
        std::unique_lock lock(mutex_);
        while (!waiting_.empty()) {
            const auto texts = std::exchange(waiting_, {});
            lock.unlock();
            memory_->store(window_, texts);
            lock.lock();
        }
        isStoring_ = false;
    }

    /// There is no thread. The next call of `add` asks for one again.
    void giveUp()
    {
        const std::lock_guard guard(mutex_);
        isStoring_ = false;
    }

private:
    const std::shared_ptr<WindowMemory> memory_;
    const std::string window_;
    std::mutex mutex_;
    WindowMemory::Texts waiting_;
    bool isStoring_ = false;
};

MemoryWriter::MemoryWriter(std::shared_ptr<WindowMemory> memory, std::string window)
    : queue_(std::make_shared<Queue>(std::move(memory), std::move(window)))
{
}

void MemoryWriter::write(const WindowMemory::Texts& texts)
{
    if (texts.empty() || !queue_->add(texts)) {
        return;
    }
    try {
        std::thread([queue = queue_] { queue->storeAll(); }).detach();
    } catch (const std::system_error&) {
        queue_->giveUp();
    }
}

}  // namespace dunmora
