#pragma once

#include "platform/PlatformError.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace dunmora::test {

/// What `failureOf` returns when the action succeeds.
inline constexpr auto kNothingThrown = "nothing was thrown";

/// The text of the PlatformError that the action throws.
inline std::string failureOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const PlatformError& error) {
        return error.what();
    }
    return kNothingThrown;
}

/// A temporary folder, and the messages about files in it.
class FileTest : public testing::Test {
protected:
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::filesystem::path path(std::string_view name) const { return folder_.path() / name; }

    static std::string about(const std::filesystem::path& path, const std::string& message)
    {
        return "“" + path.string() + "” " + message;
    }
    static std::string changed(const std::filesystem::path& path)
    {
        return about(path, "has changed since it was read. Reload it and try again.");
    }

    static ino_t inodeOf(const std::filesystem::path& path)
    {
        struct stat status {};
        EXPECT_EQ(lstat(path.c_str(), &status), 0);
        return status.st_ino;
    }

private:
    TemporaryFolder folder_;
};

}  // namespace dunmora::test
