#include "adapters/macos/MacWindowMemory.h"

#include "adapters/macos/MacUserDefaults.h"
#include "tests/contract/WindowMemoryContract.h"

#include <gtest/gtest.h>

#include <memory>

namespace dunmora::test {
namespace {

/// The one store of this process.
class MacStore {
public:
    std::unique_ptr<WindowMemory> startProgram() const
    {
        return std::make_unique<MacWindowMemory>();
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, WindowMemoryContract, MacStore);

TEST(MacWindowMemory, HasNoTextsWhereAPreferenceIs)
{
    MacUserDefaults defaults;
    defaults.setBool("aPreference", true);

    EXPECT_EQ(MacWindowMemory().load("aPreference"), WindowMemory::Texts());
}

}  // namespace
}  // namespace dunmora::test
