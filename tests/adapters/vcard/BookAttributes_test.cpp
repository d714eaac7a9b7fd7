#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <set>
#include <string>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;

/// Removing people changes only the content of a file, not its metadata or its links.
class BookAttributesTest : public BookTest {
protected:
    BookAttributesTest() { write(file(), card("a") + card("b")); }

    /// Removes one person, which replaces the file.
    void change()
    {
        removeFrom(file(), {"a"});
        EXPECT_EQ(contentOf(file()), card("b"));
    }

    struct stat status() const
    {
        struct stat status {};
        EXPECT_EQ(stat(file().c_str(), &status), 0);
        return status;
    }

    static bool set(const fs::path& path, const char* name, const std::string& value)
    {
        return setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
    }

    /// The attribute's value; "none" when it is not set.
    std::string attribute(const char* name) const
    {
        std::array<char, 256> value{};
        const auto size = getxattr(file().c_str(), name, value.data(), value.size());
        return size < 0 ? "none" : std::string(value.data(), static_cast<std::size_t>(size));
    }

    /// An access control list as Linux stores it: the owner may read and write, user 1234 may read,
    /// others have no access.
    static std::string accessList()
    {
        struct Entry {
            std::uint16_t tag;
            std::uint16_t permissions;
            std::uint32_t id;
        };
        constexpr std::uint32_t kNoId = 0xFFFFFFFF;
        constexpr std::array<Entry, 5> kEntries = {{{0x01, 6, kNoId},
                                                    {0x02, 4, 1234},
                                                    {0x04, 0, kNoId},
                                                    {0x10, 4, kNoId},
                                                    {0x20, 0, kNoId}}};
        const auto append = [](std::string& text, std::uint32_t number, unsigned bytes) {
            for (unsigned i = 0; i < bytes; ++i) {
                text += static_cast<char>(number >> (8U * i));
            }
        };
        std::string list;
        append(list, 2, 4);
        for (const auto& entry : kEntries) {
            append(list, entry.tag, 2);
            append(list, entry.permissions, 2);
            append(list, entry.id, 4);
        }
        return list;
    }
};

TEST_F(BookAttributesTest, KeepTheModeDespiteTheUmask)
{
    for (const mode_t mode : {0600U, 0640U, 0666U, 0751U, 0200U | 0444U, 02770U}) {
        write(file(), card("a") + card("b"));
        ASSERT_EQ(chmod(file().c_str(), mode), 0);
        const auto mask = umask(077);

        change();

        umask(mask);
        EXPECT_EQ(status().st_mode & 07777U, mode);
    }
}

TEST_F(BookAttributesTest, KeepTheOwner)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can give a file away.";
    }
    ASSERT_EQ(chown(file().c_str(), 12345, 12346), 0);
    ASSERT_EQ(chmod(file().c_str(), 04640), 0);

    change();

    EXPECT_EQ(status().st_uid, 12345U);
    EXPECT_EQ(status().st_gid, 12346U);
    EXPECT_EQ(status().st_mode & 07777U, 04640U);
}

TEST_F(BookAttributesTest, KeepExtendedAttributes)
{
    using namespace std::string_literals;
    if (!set(file(), "user.comment", "any\0bytes"s)) {
        GTEST_SKIP() << "The file system has no extended attributes.";
    }
    ASSERT_TRUE(set(file(), "user.empty", ""));

    change();

    EXPECT_EQ(attribute("user.comment"), "any\0bytes"s);
    EXPECT_EQ(attribute("user.empty"), "");
}

TEST_F(BookAttributesTest, KeepTheAccessControlList)
{
    if (!set(file(), "system.posix_acl_access", accessList())) {
        GTEST_SKIP() << "The file system has no access control lists.";
    }
    const auto list = attribute("system.posix_acl_access");
    const auto mode = status().st_mode;

    change();

    EXPECT_EQ(attribute("system.posix_acl_access"), list);
    EXPECT_EQ(status().st_mode, mode);
}

TEST_F(BookAttributesTest, IncludeNoAccessControlListFromTheFolder)
{
    if (!set(folder(), "system.posix_acl_default", accessList())) {
        GTEST_SKIP() << "The file system has no access control lists.";
    }
    const auto mode = status().st_mode;

    change();

    EXPECT_EQ(attribute("system.posix_acl_access"), "none");
    EXPECT_EQ(status().st_mode, mode);
}

TEST_F(BookAttributesTest, KeepASymbolicLinkAndChangeItsTarget)
{
    const TemporaryFolder elsewhere;
    const auto target = elsewhere.path() / "real.vcf";
    fs::rename(file(), target);
    fs::create_symlink(target, folder() / "hop.vcf");
    fs::create_symlink("hop.vcf", file());

    change();

    EXPECT_EQ(contentOf(target), card("b"));
    EXPECT_EQ(fs::read_symlink(file()), "hop.vcf");
    EXPECT_EQ(fs::read_symlink(folder() / "hop.vcf"), target);
    EXPECT_EQ(namesIn(elsewhere.path()), (std::set<std::string>{"real.vcf"}));
}

TEST_F(BookAttributesTest, WorkWithARelativePath)
{
    const auto home = fs::current_path();
    fs::current_path(folder());

    removeFrom("book.vcf", {"a"});
    removeFrom("./book.vcf", {"b"});

    fs::current_path(home);
    EXPECT_EQ(contentOf(file()), "");
    EXPECT_EQ(namesIn(folder()), (std::set<std::string>{"book.vcf"}));
}

}  // namespace
}  // namespace dunmora::test
