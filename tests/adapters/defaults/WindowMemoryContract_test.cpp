#include "tests/contract/WindowMemoryContract.h"

#include "adapters/defaults/IniWindowMemory.h"
#include "tests/fakes/FakeWindowMemory.h"
#include "tests/fakes/TemporaryFolder.h"

#include <memory>
#include <string_view>
#include <utility>

namespace dunmora::test {
namespace {

/// The memory that several programs share.
class SharedMemory final : public WindowMemory {
public:
    explicit SharedMemory(std::shared_ptr<WindowMemory> memory) : memory_(std::move(memory)) {}

    Texts load(std::string_view window) override { return memory_->load(window); }
    void store(std::string_view window, const Texts& texts) override
    {
        memory_->store(window, texts);
    }

private:
    std::shared_ptr<WindowMemory> memory_;
};

class FakeStore {
public:
    std::unique_ptr<WindowMemory> startProgram() const
    {
        return std::make_unique<SharedMemory>(memory_);
    }

private:
    std::shared_ptr<WindowMemory> memory_ = std::make_shared<FakeWindowMemory>();
};

class IniStore {
public:
    std::unique_ptr<WindowMemory> startProgram() const
    {
        return std::make_unique<IniWindowMemory>(folder_.path() / "dunmora" / "dunmora.conf");
    }

private:
    TemporaryFolder folder_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WindowMemoryContract, FakeStore);
INSTANTIATE_TYPED_TEST_SUITE_P(Ini, WindowMemoryContract, IniStore);

}  // namespace
}  // namespace dunmora::test
