#include "tests/contract/UserDefaultsContract.h"

#include "adapters/defaults/IniUserDefaults.h"
#include "tests/fakes/FakeUserDefaults.h"
#include "tests/fakes/TemporaryFolder.h"

#include <filesystem>
#include <memory>

namespace dunmora::test {
namespace {

class FakeStore {
public:
    std::unique_ptr<UserDefaults> startProgram() const
    {
        return std::make_unique<FakeUserDefaults>(disk_);
    }
    void refuseWrites() { disk_->isWritable = false; }
    void takeWrites() { disk_->isWritable = true; }

private:
    std::shared_ptr<FakeDisk> disk_ = std::make_shared<FakeDisk>();
};

class IniStore {
public:
    std::unique_ptr<UserDefaults> startProgram() const
    {
        return std::make_unique<IniUserDefaults>(settings_ / "dunmora.conf");
    }
    /// A file where the folder should be stops root, too.
    void refuseWrites() { write(settings_, ""); }
    void takeWrites() { std::filesystem::remove(settings_); }

private:
    TemporaryFolder folder_;
    std::filesystem::path settings_ = folder_.path() / "dunmora";
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UserDefaultsContract, FakeStore);
INSTANTIATE_TYPED_TEST_SUITE_P(Ini, UserDefaultsContract, IniStore);

}  // namespace
}  // namespace dunmora::test
