#include "adapters/vcard/BookChanges.h"

#include "platform/PlatformError.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using Indices = std::vector<std::size_t>;

/// What happens to a change.
enum class Outcome { Succeeds, HasChanged, Fails, FailsHalfway };

class FakeFileChange final : public FileChange {
public:
    FakeFileChange(Outcome outcome, std::filesystem::path path)
        : outcome_(outcome), path_(std::move(path))
    {
    }

    void checkUnchanged() const override
    {
        if (outcome_ == Outcome::HasChanged) {
            throw PlatformError("changed.");
        }
    }
    void commit() override
    {
        if (outcome_ != Outcome::Fails) {
            done_.push_back(path_);
        }
        if (outcome_ != Outcome::Succeeds) {
            throw PlatformError("failed.");
        }
    }
    const std::vector<std::filesystem::path>& done() const override { return done_; }

private:
    Outcome outcome_;
    std::filesystem::path path_;
    std::vector<std::filesystem::path> done_;
};

class BookChangesTest : public FileTest {
protected:
    /// Commits changes of a.vcf, b.vcf and so on with these outcomes; returns the failure.
    std::string commit(const std::vector<Outcome>& outcomes)
    {
        BookChanges changes;
        char letter = 'a';
        for (const auto outcome : outcomes) {
            const auto file = path(std::string(1, letter++) + ".vcf");
            changes.add(std::make_unique<FakeFileChange>(outcome, file), file);
        }
        return failureOf([&] { changes.commit([&](std::size_t i) { committed_.push_back(i); }); });
    }

    Indices committed_;
};

TEST_F(BookChangesTest, AreCommittedInOrder)
{
    EXPECT_EQ(commit({Outcome::Succeeds, Outcome::Succeeds, Outcome::Succeeds}), kNothingThrown);

    EXPECT_EQ(committed_, (Indices{0, 1, 2}));
}

TEST_F(BookChangesTest, AreNotCommittedWhenALaterFileHasChanged)
{
    EXPECT_EQ(commit({Outcome::Succeeds, Outcome::HasChanged}), "changed.");

    EXPECT_EQ(committed_, Indices());
}

TEST_F(BookChangesTest, ReportWhichFilesHaveChangedAfterAFailure)
{
    EXPECT_EQ(commit({Outcome::Succeeds, Outcome::Fails, Outcome::Succeeds}),
              "failed. Files changed before the error: a.vcf. Files not changed: b.vcf, c.vcf.");

    EXPECT_EQ(committed_, Indices{0});
}

TEST_F(BookChangesTest, DoNotCallAFileUnchangedThatHasChangedUnderOneName)
{
    EXPECT_EQ(commit({Outcome::FailsHalfway, Outcome::Succeeds}),
              "failed. Files not changed: b.vcf.");
    EXPECT_EQ(commit({Outcome::Succeeds, Outcome::FailsHalfway}),
              "failed. Files changed before the error: a.vcf.");
}

TEST_F(BookChangesTest, OfOneFileReportTheReasonAlone)
{
    EXPECT_EQ(commit({Outcome::Fails}), "failed.");
}

TEST_F(BookChangesTest, FlushEveryFolderThatHasChangedBeforeAFailure)
{
    BookChanges changes;
    const auto add = [&](Outcome outcome, const std::string& folder) {
        changes.add(std::make_unique<FakeFileChange>(outcome, path(folder) / "a.vcf"), folder);
    };
    add(Outcome::Succeeds, "gone-1");
    add(Outcome::FailsHalfway, "gone-2");
    add(Outcome::Succeeds, "gone-3");

    EXPECT_EQ(
        failureOf([&] { changes.commit([](std::size_t) {}); }),
        "failed. Files changed before the error: gone-1. Files not changed: gone-3. " +
            about(path("gone-1"), "could not be flushed to disk: No such file or directory. ") +
            about(path("gone-2"), "could not be flushed to disk: No such file or directory. ") +
            "A power failure now could bring deleted people back.");
}

TEST_F(BookChangesTest, ReportAFolderThatCannotBeFlushed)
{
    const auto gone = path("gone");
    BookChanges changes;
    changes.add(std::make_unique<FakeFileChange>(Outcome::Succeeds, gone / "a.vcf"), "a.vcf");

    EXPECT_EQ(failureOf([&] { changes.commit([](std::size_t) {}); }),
              about(gone, "could not be flushed to disk: No such file or directory. The people "
                          "were deleted, but a power failure now could bring them back."));
}

}  // namespace
}  // namespace dunmora::test
