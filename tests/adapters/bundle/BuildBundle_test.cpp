#include "adapters/bundle/BuildBundle.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace dunmora::test {
namespace {

TEST(BuildBundle, HasTheVersion)
{
    EXPECT_EQ(BuildBundle().objectForInfoDictionaryKey("CFBundleVersion"), "1.2");
}

TEST(BuildBundle, HasTheIdForTheDesktop)
{
    EXPECT_EQ(BuildBundle().objectForInfoDictionaryKey("CFBundleIdentifier"), "org.example.app");
}

TEST(BuildBundle, HasTheUpdateHostOnlyInABuildWithAnUpdateService)
{
    const std::string_view host = DUNMORA_UPDATE_HOST;

    EXPECT_EQ(BuildBundle().objectForInfoDictionaryKey("DunmoraUpdateHost"),
              host.empty() ? std::nullopt : std::optional<std::string>(host));
}

TEST(BuildBundle, HasNothingElse)
{
    EXPECT_EQ(BuildBundle().objectForInfoDictionaryKey("CFBundleName"), std::nullopt);
}

}  // namespace
}  // namespace dunmora::test
