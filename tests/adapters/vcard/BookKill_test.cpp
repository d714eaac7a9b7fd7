#include "adapters/posix/Leftover.h"
#include "adapters/posix/ProcessShutdown.h"
#include "tests/adapters/vcard/BookTest.h"
#include "tests/fakes/ChildProcess.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <compare>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;

/// The content of each file, by name; nullopt for a missing file.
using Contents = std::map<std::string, std::optional<std::string>>;

using Moment = SystemCall::Moment;

/// A moment of a deletion, identified by its system call. A count of the calls before it would
/// differ between runs, because a sanitizer's runtime adds its own.
struct Stage {
    int namesGiven = 0;
    long call = 0;
    Moment moment = Moment::Before;

    // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer here
    auto operator<=>(const Stage&) const = default;
};

/// Ends a deletion before and after each of its system calls, in one run for each, and checks the
/// files that remain.
class BookKillTest : public BookTest {
protected:
    struct Counts {
        int ends = 0;
        // The stages after which another file was left in the folder.
        std::set<Stage> leftovers;
        // How often one of them was an old file.
        int oldFiles = 0;
        int halfDone = 0;
        bool canTrace = true;
    };

    /// The book is in the folder `place`; `remove` deletes from it.
    static Counts endEverywhere(Fate fate, const fs::path& place, const Contents& before,
                                const Contents& after, const std::function<void()>& remove)
    {
        Counts counts;
        // What reading a book sets up once in a process, the children would otherwise set up until
        // this process has read one, and the calls until which they live would be others then.
        restore(place, before);
        remarksOf(place);
        while (true) {
            restore(place, before);
            int calls = 0;
            Stage stage;
            const auto end = traceChild(remove, [&](SystemCall call) {
                if (calls > counts.ends) {
                    return Fate::Continue;
                }
                const bool isName = call.number == SYS_linkat && call.moment == Moment::Before;
                stage = {stage.namesGiven + (isName ? 1 : 0), call.number, call.moment};
                return calls++ == counts.ends ? fate : Fate::Continue;
            });
            counts.canTrace = end != End::CannotBeTraced;
            if (calls <= counts.ends) {
                break;
            }
            look(place, before, after, stage, counts);
            ++counts.ends;
        }
        if (counts.canTrace) {
            expectExactly(place, after);
        }
        return counts;
    }

private:
    static void restore(const fs::path& place, const Contents& contents)
    {
        for (const auto& name : namesIn(place)) {
            fs::remove(place / name);
        }
        for (const auto& [name, content] : contents) {
            if (content) {
                write(place / name, *content);
            }
        }
    }

    static std::optional<std::string> found(const fs::path& path)
    {
        return fs::exists(path) ? std::optional(contentOf(path)) : std::nullopt;
    }

    static void look(const fs::path& place, const Contents& before, const Contents& after,
                     const Stage& stage, Counts& counts)
    {
        std::size_t changed = 0;
        for (const auto& [name, old] : before) {
            const auto now = found(place / name);
            EXPECT_TRUE(now == old || now == after.at(name))
                << name << " is neither the old nor the new one after end " << counts.ends;
            changed += now == old ? 0U : 1U;
        }
        counts.halfDone += changed > 0 && changed < before.size() ? 1 : 0;
        bool isClean = true;
        std::set<std::string> known;
        for (const auto& leftover : leftoversIn(place)) {
            known.insert(leftover.path.filename().string());
            lookAt(leftover, place, before, counts);
        }
        for (const auto& name : namesIn(place)) {
            const bool isNew = name.starts_with(kNewFilePrefix) && contentOf(place / name).empty();
            EXPECT_TRUE(before.contains(name) || known.contains(name) || isNew) << name;
            isClean = isClean && before.contains(name);
        }
        if (!isClean) {
            counts.leftovers.insert(stage);
        }
    }

    static void lookAt(const Leftover& leftover, const fs::path& place, const Contents& before,
                       Counts& counts)
    {
        const auto sentence = "The last change was interrupted. “" + leftover.name.fileName +
                              "” as it was before is in “" + leftover.path.string() + "”.";
        const auto remarks = remarksOf(place);
        const bool isReported =
            std::find(remarks.begin(), remarks.end(), sentence) != remarks.end();
        const bool isOld = leftover.kind == Leftover::Kind::Replaced;
        EXPECT_EQ(isReported, isOld) << "after end " << counts.ends;
        EXPECT_NE(leftover.kind, Leftover::Kind::Doubtful);
        if (isOld) {
            EXPECT_EQ(contentOf(leftover.path), before.at(leftover.name.fileName));
            ++counts.oldFiles;
        }
    }

    static void expectExactly(const fs::path& place, const Contents& contents)
    {
        for (const auto& [name, content] : contents) {
            EXPECT_EQ(found(place / name), content) << name;
        }
        for (const auto& name : namesIn(place)) {
            EXPECT_TRUE(contents.contains(name)) << name;
        }
    }
};

TEST_F(BookKillTest, LeavesTheOldFileOrTheNewOneWhereverTheProgramIsKilled)
{
    const Contents before = {{"book.vcf", card("a") + card("b") + card("c")}};
    const Contents after = {{"book.vcf", card("a") + card("c")}};

    const auto counts =
        endEverywhere(Fate::Kill, folder(), before, after, [&] { removeFrom(file(), {"b"}); });
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 20);
    EXPECT_GT(counts.oldFiles, 0);
    std::cout << counts.ends << " kills, " << counts.leftovers.size()
              << " moments leave a file behind\n";
}

TEST_F(BookKillTest, LeavesNothingBesideTheFileWhereverTheUserQuits)
{
    const Contents before = {{"book.vcf", card("a") + card("b") + card("c")}};
    const Contents after = {{"book.vcf", card("a") + card("c")}};

    const auto counts = endEverywhere(Fate::Terminate, folder(), before, after, [&] {
        exitOnSignals(EXIT_SUCCESS);
        removeFrom(file(), {"b"});
    });
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 20);
    EXPECT_TRUE(counts.leftovers.empty());
}

TEST_F(BookKillTest, LeavesEachFileOfAFolderOldOrNewWhereverTheProgramIsKilled)
{
    const Contents before = {{"a.vcf", card("a1") + card("a2")},
                             {"b.vcf", card("b")},
                             {"c.vcf", card("c1") + card("c2")}};
    const Contents after = {{"a.vcf", card("a2")}, {"b.vcf", std::nullopt}, {"c.vcf", card("c1")}};

    const auto counts = endEverywhere(Fate::Kill, folder(), before, after, [&] {
        removeFrom(folder(), {"a1", "b", "c2"});
    });
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 50);
    EXPECT_GT(counts.halfDone, 0);
    EXPECT_GT(counts.oldFiles, 0);
    std::cout << counts.ends << " kills, " << counts.leftovers.size()
              << " moments leave a file behind\n";
}

TEST_F(BookKillTest, LeavesNothingBesideAFolderOldOrNewWhereverTheUserQuits)
{
    const Contents before = {{"a.vcf", card("a1") + card("a2")},
                             {"b.vcf", card("b")},
                             {"c.vcf", card("c1") + card("c2")}};
    const Contents after = {{"a.vcf", card("a2")}, {"b.vcf", std::nullopt}, {"c.vcf", card("c1")}};

    const auto counts = endEverywhere(Fate::Terminate, folder(), before, after, [&] {
        exitOnSignals(EXIT_SUCCESS);
        removeFrom(folder(), {"a1", "b", "c2"});
    });
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 50);
    EXPECT_EQ(counts.halfDone, 0);
    EXPECT_TRUE(counts.leftovers.empty());
}

/// Ends undos of a deletion in the same way.
class UndoKillTest : public BookKillTest {
protected:
    /// Deletes these people from the book, which is a file or the folder.
    void deletes(const fs::path& book, const Contents& contents,
                 const std::vector<std::string>& uids)
    {
        for (const auto& [name, content] : contents) {
            write(path(name), *content);
        }
        book_ = std::make_unique<VCardAddressBook>(book);
        ask(*book_, uids);
        book_->save();
    }

    // The traced process inherits what the book remembers.
    Counts endUndoEverywhere(Fate fate, const Contents& before, const Contents& after)
    {
        return endEverywhere(fate, folder(), before, after, [&] {
            if (fate == Fate::Terminate) {
                exitOnSignals(EXIT_SUCCESS);
            }
            book_->restoreLast();
        });
    }

private:
    std::unique_ptr<VCardAddressBook> book_;
};

TEST_F(UndoKillTest, LeavesTheOldFileOrTheNewOneWhereverTheProgramIsKilled)
{
    const Contents whole = {{"book.vcf", card("a") + card("b") + card("c")}};
    const Contents rest = {{"book.vcf", card("a") + card("c")}};
    deletes(file(), whole, {"b"});

    const auto counts = endUndoEverywhere(Fate::Kill, rest, whole);
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 20);
    EXPECT_GT(counts.oldFiles, 0);
}

TEST_F(UndoKillTest, LeavesTheOldFileOrOneWithEverybodyWhenOthersHaveChangedIt)
{
    deletes(file(), {{"book.vcf", card("a") + card("b") + card("c")}}, {"a", "b"});
    const Contents changed = {{"book.vcf", card("c") + card("x")}};
    const Contents all = {{"book.vcf", card("c") + card("x") + card("a") + card("b")}};

    const auto counts = endUndoEverywhere(Fate::Kill, changed, all);
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 20);
}

TEST_F(UndoKillTest, LeavesEachFileOfAFolderOldOrNewWhereverTheProgramIsKilled)
{
    const Contents whole = {{"a.vcf", card("a1") + card("a2")},
                            {"b.vcf", card("b")},
                            {"c.vcf", card("c1") + card("c2")}};
    const Contents rest = {{"a.vcf", card("a2")}, {"b.vcf", std::nullopt}, {"c.vcf", card("c1")}};
    deletes(folder(), whole, {"a1", "b", "c2"});

    const auto counts = endUndoEverywhere(Fate::Kill, rest, whole);
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 50);
    EXPECT_GT(counts.halfDone, 0);
    EXPECT_GT(counts.oldFiles, 0);
}

TEST_F(UndoKillTest, LeavesNothingBesideAFolderOldOrNewWhereverTheUserQuits)
{
    const Contents whole = {{"a.vcf", card("a1") + card("a2")},
                            {"b.vcf", card("b")},
                            {"c.vcf", card("c1") + card("c2")}};
    const Contents rest = {{"a.vcf", card("a2")}, {"b.vcf", std::nullopt}, {"c.vcf", card("c1")}};
    deletes(folder(), whole, {"a1", "b", "c2"});

    const auto counts = endUndoEverywhere(Fate::Terminate, rest, whole);
    if (!counts.canTrace) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(counts.ends, 50);
    EXPECT_EQ(counts.halfDone, 0);
    EXPECT_TRUE(counts.leftovers.empty());
}

/// The same where files without a name are not available, as on some file systems.
class BookKillNamedTest : public BookKillTest {
protected:
    /// Ends deletions as `endEverywhere` does and returns the result of `judge`.
    std::string endEverywhereThere(Fate fate,
                                   const std::function<std::string(const Counts&)>& judge)
    {
        // Without /proc a nameless file cannot be given a name.
        return inChild([&]() -> std::string {
            if (unshare(CLONE_NEWNS) != 0 ||
                mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                mount("none", "/proc", "tmpfs", 0, nullptr) != 0) {
                return "no mounts";
            }
            const Contents before = {{"book.vcf", card("a") + card("b")}};
            const Contents after = {{"book.vcf", card("b")}};
            const auto counts = endEverywhere(fate, folder(), before, after, [&] {
                exitOnSignals(EXIT_SUCCESS);
                removeFrom(file(), {"a"});
            });
            if (!counts.canTrace) {
                return "no tracing";
            }
            return HasFailure() ? "failed" : judge(counts);
        });
    }

    static bool isImpossible(const std::string& outcome)
    {
        return outcome == "no mounts" || outcome == "no tracing";
    }
};

TEST_F(BookKillNamedTest, LeavesTheOldFileOrTheNewOneWhereverTheProgramIsKilled)
{
    const auto outcome = endEverywhereThere(Fate::Kill, [](const Counts& counts) {
        return counts.leftovers.size() > 4 ? "done" : "the files had no name";
    });
    if (isImpossible(outcome)) {
        GTEST_SKIP() << "Only root can hide /proc, and not everywhere: " << outcome;
    }

    EXPECT_EQ(outcome, "done");
}

TEST_F(BookKillNamedTest, LeavesNothingBesideTheFileWhereverTheUserQuits)
{
    const auto outcome = endEverywhereThere(Fate::Terminate, [](const Counts& counts) {
        return std::to_string(counts.leftovers.size()) + " files are left";
    });
    if (isImpossible(outcome)) {
        GTEST_SKIP() << "Only root can hide /proc, and not everywhere: " << outcome;
    }

    EXPECT_EQ(outcome, "0 files are left");
}

}  // namespace
}  // namespace dunmora::test
