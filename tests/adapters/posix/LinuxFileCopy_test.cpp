#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileReplacement.h"
#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstddef>
#include <set>
#include <string>

namespace dunmora::test {
namespace {

/// The book has an attribute, and another file has another one.
class CopyAttributesTest : public FileTest {
protected:
    void SetUp() override
    {
        write(path("book"), "old");
        write(path("new"), "new");
        if (setxattr(path("book").c_str(), "user.comment", "x", 1, 0) != 0) {
            GTEST_SKIP() << "The file system has no extended attributes.";
        }
        ASSERT_EQ(setxattr(path("new").c_str(), "user.surplus", "x", 1, 0), 0);
    }

    bool copy() const
    {
        return copyAttributes(openFile(path("book"), O_RDWR), openFile(path("new"), O_RDWR));
    }

    /// The names of the attributes of the other file.
    std::string copied() const
    {
        std::string names(100, '\0');
        const auto size = listxattr(path("new").c_str(), names.data(), names.size());
        names.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        return names;
    }
};

TEST_F(CopyAttributesTest, AddsMissingAttributesAndRemovesSurplusOnes)
{
    EXPECT_TRUE(copy());

    EXPECT_EQ(copied(), std::string("user.comment\0", 13));
}

TEST_F(CopyAttributesTest, FailsWhenTheAttributesOfEitherFileCannotBeListed)
{
    for (const auto call : {Call::CountAttributes, Call::ListAttributes}) {
        for (const int listedBefore : {0, 1}) {
            const FailingCalls failure(call, EIO, 1, listedBefore);

            EXPECT_FALSE(copy());
            EXPECT_EQ(errno, EIO);
        }
    }
}

TEST_F(CopyAttributesTest, FailsWhenASurplusAttributeCannotBeRemoved)
{
    const FailingCalls failure(Call::RemoveAttribute, EPERM);

    EXPECT_FALSE(copy());
    EXPECT_EQ(errno, EPERM);
}

TEST_F(CopyAttributesTest, ListsAttributesAgainWhenTheirNumberGrows)
{
    const FailingCalls failure(Call::ListAttributes, ERANGE);

    EXPECT_TRUE(copy());

    EXPECT_EQ(failure.failed(), 1);
    EXPECT_EQ(copied(), std::string("user.comment\0", 13));
}

TEST_F(CopyAttributesTest, FailsWhenTheirNumberKeepsGrowing)
{
    const FailingCalls failure(Call::ListAttributes, ERANGE, 1000);

    EXPECT_FALSE(copy());
    EXPECT_EQ(errno, ERANGE);
}

TEST_F(CopyAttributesTest, CopiesNothingWhereTheFileSystemHasNoAttributes)
{
    const FailingCalls failure(Call::CountAttributes, ENOTSUP, 2);

    EXPECT_TRUE(copy());
    EXPECT_EQ(failure.failed(), 2);
}

TEST_F(CopyAttributesTest, LeavesTheBookUnchangedAfterAFailure)
{
    const FailingCalls failure(Call::CountAttributes, EIO);

    EXPECT_EQ(failureOf([&] { FileReplacement(LockedFile::open({path("book")}), {"new"}); }),
              about(path("book"), "cannot be changed without losing extended attributes: "
                                  "Input/output error."));

    EXPECT_EQ(contentOf(path("book")), "old");
    EXPECT_EQ(namesIn(folder()), (std::set<std::string>{"book", "new"}));
}

}  // namespace
}  // namespace dunmora::test
