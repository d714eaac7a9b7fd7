#include "adapters/posix/CardFileName.h"

#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace dunmora::test {
namespace {

TEST(CardFileName, EndsInVcfOrVcardInAnyCaseAndIsNotHidden)
{
    for (const auto* const name :
         {"ann.vcf", "ann.VCF", "ann.vCard", "ann.lee.Vcf", "a.vcf.vcard"}) {
        EXPECT_TRUE(isCardFileName(name)) << name;
    }
    for (const auto* const name : {"ann.txt", "ann.vcf.bak", "ann.vcards", ".ann.vcf", ".vcf",
                                   ".VCARD", "vcf", "annvcf", "ann.", ""}) {
        EXPECT_FALSE(isCardFileName(name)) << name;
    }
}

TEST(CardFileName, JoinsTheBookThatIsItsFolder)
{
    const TemporaryFolder folder;
    const auto book = folder.path() / "people";
    std::filesystem::create_directory(book);
    std::filesystem::create_directory_symlink(book, folder.path() / "link");

    for (const auto& file : {book / "a.vcf", folder.path() / "link" / "a.vcf",
                             book / ".." / "people" / "a.vcf", book / "a.VCF", book / "a.vcard"}) {
        EXPECT_TRUE(wouldJoinBook(file, book)) << file;
        EXPECT_TRUE(wouldJoinBook(file, folder.path() / "link")) << file;
    }
}

TEST(CardFileName, JoinsNoOtherBook)
{
    const TemporaryFolder folder;
    const auto book = folder.path() / "people";
    std::filesystem::create_directory(book);
    std::filesystem::create_directory(book / "old");

    for (const auto& file : {folder.path() / "a.vcf", book / "old" / "a.vcf", book / "a.txt",
                             folder.path() / "missing" / "a.vcf"}) {
        EXPECT_FALSE(wouldJoinBook(file, book)) << file;
    }
    EXPECT_FALSE(wouldJoinBook(folder.path() / "a.vcf", folder.path() / "book.vcf"));
    EXPECT_FALSE(wouldJoinBook(folder.path() / "a.vcf", "eds:"));
}

}  // namespace
}  // namespace dunmora::test
