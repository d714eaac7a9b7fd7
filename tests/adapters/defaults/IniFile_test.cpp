#include "adapters/defaults/IniFile.h"

#include "platform/PlatformError.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <future>
#include <set>
#include <string>

namespace dunmora::test {
namespace {

class IniFileTest : public testing::Test {
protected:
    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_.path() / "dunmora" / "dunmora.conf";
    IniFile file_{path_};
};

bool setMine(IniDocument& document)
{
    return document.set("mine", true);
}

TEST_F(IniFileTest, IsEmptyWhileItIsMissing)
{
    EXPECT_EQ(file_.load().text(), "");
    EXPECT_EQ(namesIn(folder_.path()), std::set<std::string>());
}

TEST_F(IniFileTest, IsCreatedByItsFirstChange)
{
    file_.change(setMine);

    EXPECT_EQ(contentOf(path_), "[General]\nmine=true\n");
    EXPECT_TRUE(file_.load().values().at("mine"));
}

TEST_F(IniFileTest, IsNotWrittenWhenNothingHasChanged)
{
    std::filesystem::create_directory(path_.parent_path());
    write(path_, "; hers\n");

    file_.change([](IniDocument& document) {
        document.set("mine", true);
        return false;
    });

    EXPECT_EQ(contentOf(path_), "; hers\n");
}

TEST_F(IniFileTest, IsReadAgainWhenAnotherProgramChangesItMeanwhile)
{
    std::filesystem::create_directory(path_.parent_path());
    write(path_, "hers=1\n");
    int edits = 0;

    file_.change([&](IniDocument& document) {
        if (++edits == 1) {
            write(path_, "hers=1\nhis=1\n");
        }
        return setMine(document);
    });

    EXPECT_EQ(edits, 2);
    EXPECT_EQ(contentOf(path_), "hers=1\nhis=1\nmine=true\n");
}

TEST_F(IniFileTest, WaitsForASlowChangeByAnotherPartOfTheProgram)
{
    const IniFile impatient(path_, std::chrono::milliseconds(0));
    std::future<void> other;

    file_.change([&](IniDocument& document) {
        other = std::async(std::launch::async, [&] {
            impatient.change([](IniDocument& found) { return found.set("other", true); });
        });
        // If it did not wait, it would fail at once.
        other.wait_for(std::chrono::milliseconds(50));
        return setMine(document);
    });

    EXPECT_NO_THROW(other.get());
    EXPECT_EQ(contentOf(path_), "[General]\nmine=true\nother=true\n");
}

TEST_F(IniFileTest, IsNeverChangedWhenItIsDamaged)
{
    std::filesystem::create_directory(path_.parent_path());
    write(path_, "junk\n");

    EXPECT_THROW(file_.load(), PlatformError);
    EXPECT_THROW(file_.change(setMine), PlatformError);

    EXPECT_EQ(contentOf(path_), "junk\n");
}

TEST_F(IniFileTest, IsNeitherReadNorChangedWhenItIsHuge)
{
    const std::string largest(std::size_t{1} << 20U, '\n');
    std::filesystem::create_directory(path_.parent_path());
    write(path_, largest);
    EXPECT_EQ(file_.load().text(), largest);

    write(path_, largest + "\n");

    EXPECT_THROW(file_.load(), PlatformError);
    EXPECT_THROW(file_.change(setMine), PlatformError);
    EXPECT_EQ(contentOf(path_), largest + "\n");
}

}  // namespace
}  // namespace dunmora::test
