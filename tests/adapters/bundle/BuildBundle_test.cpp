#include "adapters/bundle/BuildBundle.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

TEST(BuildBundle, HasOnlyTheVersionAndTheUpdateHost)
{
    const BuildBundle bundle;

    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleVersion"), PROJECT_VERSION);
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("DunmoraUpdateHost"), DUNMORA_UPDATE_HOST);
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleName"), std::nullopt);
}

}  // namespace
}  // namespace dunmora::test
