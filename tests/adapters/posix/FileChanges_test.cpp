#include "adapters/posix/FileChanges.h"

#include "platform/PlatformError.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using Indices = std::vector<std::size_t>;
using Log = std::vector<std::string>;

/// What goes wrong with a change.
enum class Flaw {
    None,
    HasChanged,
    FailsToApply,
    HasAnotherOldFile,
    ChangesLate,
    CannotBeFinished,
    CannotBeReverted,
    RunsOutOfMemory,
    RunsOutOfMemoryReverting
};

class FakeFileChange final : public FileChange {
public:
    FakeFileChange(Flaw flaw, std::filesystem::path path, Log& log)
        : flaw_(flaw), path_(std::move(path)), log_(log)
    {
    }

    void checkUnchanged() const override { failIf(Flaw::HasChanged, "changed."); }
    void apply() override
    {
        note("apply");
        failIf(Flaw::FailsToApply, "failed.");
        if (flaw_ == Flaw::RunsOutOfMemory) {
            throw std::bad_alloc();
        }
        isApplied_ = true;
    }
    void checkOldFile() override
    {
        note("check");
        failIf(Flaw::HasAnotherOldFile, "another file.");
    }
    void checkOldFileAgain() const override
    {
        note("check again");
        failIf(Flaw::ChangesLate, "changed late.");
    }
    std::string finish() override
    {
        note("finish");
        return flaw_ == Flaw::CannotBeFinished ? "It stays." : "";
    }
    std::string revert() override
    {
        note("revert");
        if (flaw_ == Flaw::RunsOutOfMemoryReverting) {
            throw std::bad_alloc();
        }
        if (flaw_ == Flaw::CannotBeReverted) {
            return "It cannot be reverted.";
        }
        isApplied_ = false;
        return "";
    }
    std::vector<std::filesystem::path> changedPaths() const override
    {
        return isApplied_ ? std::vector{path_} : std::vector<std::filesystem::path>();
    }
    std::vector<std::filesystem::path> folders() const override { return {path_.parent_path()}; }

private:
    void failIf(Flaw flaw, const std::string& message) const
    {
        if (flaw_ == flaw) {
            throw PlatformError(message);
        }
    }
    void note(const std::string& call) const { log_.push_back(call + " " + path_.stem().string()); }

    Flaw flaw_;
    std::filesystem::path path_;
    Log& log_;
    bool isApplied_ = false;
};

class FileChangesTest : public FileTest {
protected:
    void add(FileChanges& changes, Flaw flaw, const std::filesystem::path& file)
    {
        changes.add(std::make_unique<FakeFileChange>(flaw, file, log_), file);
    }

    /// Commits changes of a.vcf, b.vcf and so on with these flaws; returns the failure.
    std::string commit(const std::vector<Flaw>& flaws)
    {
        FileChanges changes;
        char letter = 'a';
        for (const auto flaw : flaws) {
            add(changes, flaw, path(std::string(1, letter++) + ".vcf"));
        }
        return commit(changes);
    }

    std::string commit(FileChanges& changes)
    {
        return failureOf([&] { changes.commit([&](std::size_t i) { committed_.push_back(i); }); });
    }

    Indices committed_;
    Log log_;
};

TEST_F(FileChangesTest, DeleteTheOldFilesOnlyWhenAllHaveBeenChecked)
{
    EXPECT_EQ(commit({Flaw::None, Flaw::None}), kNothingThrown);

    EXPECT_EQ(log_, (Log{"apply a", "apply b", "check a", "check b", "check again a",
                         "check again b", "finish a", "finish b"}));
    EXPECT_EQ(committed_, (Indices{0, 1}));
}

TEST_F(FileChangesTest, AreNotAppliedWhenALaterFileHasChanged)
{
    EXPECT_EQ(commit({Flaw::None, Flaw::HasChanged}), "changed.");

    EXPECT_EQ(log_, Log());
    EXPECT_EQ(committed_, Indices());
}

TEST_F(FileChangesTest, AreRevertedWhenOneCannotBeApplied)
{
    EXPECT_EQ(commit({Flaw::None, Flaw::FailsToApply, Flaw::None}), "failed.");

    // It may have been applied under one of several names.
    EXPECT_EQ(log_, (Log{"apply a", "apply b", "revert b", "revert a"}));
    EXPECT_EQ(committed_, Indices());
}

TEST_F(FileChangesTest, AreRevertedWhenAnotherFileWasMovedAway)
{
    EXPECT_EQ(commit({Flaw::None, Flaw::HasAnotherOldFile}), "another file.");

    EXPECT_EQ(log_, (Log{"apply a", "apply b", "check a", "check b", "revert b", "revert a"}));
    EXPECT_EQ(committed_, Indices());
}

TEST_F(FileChangesTest, AreRevertedWhenAnOldFileChangesLate)
{
    EXPECT_EQ(commit({Flaw::ChangesLate, Flaw::None}), "changed late.");

    EXPECT_EQ(log_, (Log{"apply a", "apply b", "check a", "check b", "check again a", "revert b",
                         "revert a"}));
}

TEST_F(FileChangesTest, AreRevertedWhenMemoryRunsOut)
{
    FileChanges changes;
    add(changes, Flaw::None, path("a.vcf"));
    add(changes, Flaw::RunsOutOfMemory, path("b.vcf"));

    EXPECT_THROW(changes.commit([](std::size_t) {}), std::bad_alloc);

    EXPECT_EQ(log_, (Log{"apply a", "apply b", "revert b", "revert a"}));
}

TEST_F(FileChangesTest, ReportWhatCannotBeRevertedWhenMemoryRunsOut)
{
    EXPECT_EQ(commit({Flaw::CannotBeReverted, Flaw::RunsOutOfMemory}),
              "The change failed. It cannot be reverted. Files changed despite the error: a.vcf. "
              "Files not changed: b.vcf.");
    EXPECT_EQ(committed_, Indices{0});
}

TEST_F(FileChangesTest, RevertTheOthersWhenOneRunsOutOfMemory)
{
    EXPECT_EQ(commit({Flaw::None, Flaw::RunsOutOfMemoryReverting, Flaw::FailsToApply}),
              "failed. " + about(path("b.vcf"), "could not be restored. ") +
                  "Files changed despite the error: b.vcf. Files not changed: a.vcf, c.vcf.");
    EXPECT_EQ(log_.back(), "revert a");
}

TEST_F(FileChangesTest, ReportWhatCannotBeReverted)
{
    EXPECT_EQ(commit({Flaw::None, Flaw::CannotBeReverted, Flaw::FailsToApply}),
              "failed. It cannot be reverted. Files changed despite the error: b.vcf. "
              "Files not changed: a.vcf, c.vcf.");
    EXPECT_EQ(committed_, Indices{1});
}

TEST_F(FileChangesTest, ReportAnOldFileThatCannotBeDeleted)
{
    EXPECT_EQ(commit({Flaw::CannotBeFinished, Flaw::None}), "It stays.");

    EXPECT_EQ(committed_, (Indices{0, 1}));
}

TEST_F(FileChangesTest, OfOneFileReportTheReasonAlone)
{
    EXPECT_EQ(commit({Flaw::FailsToApply}), "failed.");
}

TEST_F(FileChangesTest, AreRevertedWhenAFolderCannotBeFlushed)
{
    FileChanges changes;
    add(changes, Flaw::None, path("a.vcf"));
    add(changes, Flaw::None, path("gone") / "b.vcf");

    EXPECT_EQ(commit(changes),
              about(path("gone"), "could not be flushed to disk: No such file or directory."));

    EXPECT_EQ(committed_, Indices());
    EXPECT_EQ(log_.back(), "revert a");
}

}  // namespace
}  // namespace dunmora::test
