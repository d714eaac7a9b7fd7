#include "adapters/posix/FileContent.h"

#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

class FileContentTest : public FileTest {};

TEST_F(FileContentTest, IsTheWholeFile)
{
    write(path("a"), "content");

    EXPECT_EQ(readFile(path("a")).bytes.view(), "content");
    EXPECT_EQ(readFile(path("a"), 7).bytes.view(), "content");
}

TEST_F(FileContentTest, IsRefusedWhenItIsLargerThanAllowed)
{
    write(path("a"), "content");

    EXPECT_EQ(failureOf([&] { readFile(path("a"), 6); }),
              about(path("a"), "cannot be read: File too large."));
}

}  // namespace
}  // namespace dunmora::test
