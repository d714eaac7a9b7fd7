#include "adapters/defaults/IniWindowMemory.h"

#include "adapters/defaults/IniUserDefaults.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace dunmora::test {
namespace {

class IniWindowMemoryTest : public testing::Test {
protected:
    using Texts = WindowMemory::Texts;

    TemporaryFolder folder_;
    std::filesystem::path settings_ = folder_.path() / "dunmora";
    std::filesystem::path file_ = settings_ / "dunmora.conf";
    IniWindowMemory memory_{file_};
};

TEST_F(IniWindowMemoryTest, IsASectionBesideThePreferences)
{
    IniUserDefaults defaults(file_);
    defaults.setBool("filterHome", true);
    defaults.synchronize();

    memory_.store("MainWindow", {{"size", "800 600"}, {"filterHome", "false"}});

    EXPECT_EQ(contentOf(file_), "[General]\nfilterHome=true\n\n"
                                "[MainWindow]\nfilterHome=false\nsize=800 600\n");
    const IniUserDefaults next(file_);
    EXPECT_TRUE(next.boolForKey("filterHome"));
    EXPECT_FALSE(next.hasValue("size"));
}

TEST_F(IniWindowMemoryTest, IsKeptWhenPreferencesAreStored)
{
    memory_.store("MainWindow", {{"size", "800 600"}});

    IniUserDefaults defaults(file_);
    defaults.setBool("filterHome", true);
    EXPECT_TRUE(defaults.synchronize());

    EXPECT_EQ(memory_.load("MainWindow"), (Texts{{"size", "800 600"}}));
    EXPECT_TRUE(IniUserDefaults(file_).boolForKey("filterHome"));
}

TEST_F(IniWindowMemoryTest, LeavesADamagedFileAloneAndReportsNothing)
{
    std::filesystem::create_directory(settings_);
    write(file_, "[MainWindow]\nsize=800 600\njunk\n");
    testing::internal::CaptureStderr();

    EXPECT_EQ(memory_.load("MainWindow"), Texts());
    memory_.store("MainWindow", {{"size", "1 2"}});

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(contentOf(file_), "[MainWindow]\nsize=800 600\njunk\n");
}

TEST_F(IniWindowMemoryTest, ReportsNothingWhenItCannotBeStored)
{
    write(settings_, "a file where the folder should be");
    testing::internal::CaptureStderr();

    memory_.store("MainWindow", {{"size", "1 2"}});

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(memory_.load("MainWindow"), Texts());
    EXPECT_EQ(contentOf(settings_), "a file where the folder should be");
}

}  // namespace
}  // namespace dunmora::test
