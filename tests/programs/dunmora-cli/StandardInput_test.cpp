#include "programs/dunmora-cli/StandardInput.h"

#include "tests/programs/dunmora-cli/CliTest.h"
#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <new>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

constexpr auto kHint =
    "dunmora-cli: Type or paste vCards, then press Enter and Ctrl+D. Ctrl+C cancels.\n";

class StandardInputTest : public CliTest {
protected:
    void SetUp() override { bookHoldsAnnTwice(); }
};

TEST_F(StandardInputTest, IsTheBookThatIsCalledDash)
{
    EXPECT_EQ(run({"list", "-", "--format", "json"}), 0);
    EXPECT_EQ(jsonAt(out(), "/addressBook"), R"("-")");
    EXPECT_EQ(run({"show", "-", "ben"}), 0);
    EXPECT_EQ(run({"diff", "-", "ann-1", "ann-2"}), 0);

    EXPECT_EQ(opened_, (Texts{"standard input", "standard input", "standard input"}));
    EXPECT_EQ(err(), "");
}

TEST_F(StandardInputTest, IsNotAFileOfThatName)
{
    EXPECT_EQ(run({"list", "./-"}), 0);
    EXPECT_EQ(run({"delete", "./-", "--yes"}), 0);

    EXPECT_EQ(opened_, (Texts{"./-", "./-"}));
}

TEST_F(StandardInputTest, CannotBeChanged)
{
    for (const Texts& arguments :
         {Texts{"delete", "-", "--yes"}, Texts{"delete", "-", "--dry-run"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(err(), "dunmora-cli: delete cannot change standard input. Name an address book. "
                         "For a file called “-”, write ./-\n");
    }
    EXPECT_EQ(run({"restore", "removed.vcf", "-", "--yes"}), 2);
    EXPECT_NE(err().find("restore cannot change standard input."), std::string::npos) << err();

    EXPECT_TRUE(opened_.empty());
}

TEST_F(StandardInputTest, IsNoBackup)
{
    for (const Texts& arguments : {Texts{"restore", "-", "book.vcf", "--yes"},
                                   Texts{"delete", "book.vcf", "--yes", "--backup", "-"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(err(),
                  "dunmora-cli: The backup must be a file. For a file called “-”, write ./-\n");
    }
    EXPECT_TRUE(opened_.empty());
}

TEST_F(StandardInputTest, IsExpectedAloudOnATerminal)
{
    environment_.inIsTerminal = true;

    for (const Texts& arguments :
         {Texts{"list", "-"}, Texts{"show", "-", "ben"}, Texts{"diff", "-", "ben", "ann-1"}}) {
        EXPECT_EQ(run(arguments), 0);
        EXPECT_TRUE(err().starts_with(kHint)) << err();
    }

    EXPECT_EQ(run({"list", "-", "--quiet"}), 0);
    EXPECT_EQ(err(), "");
    EXPECT_EQ(run({"show", "book.vcf", "ben"}), 0);
    EXPECT_EQ(err(), "");
}

TEST_F(StandardInputTest, ShowsNoProgressWhereItIsTyped)
{
    everythingIsATerminal();

    EXPECT_EQ(run({"list", "-"}), 0);
    EXPECT_EQ(err().find("Loading"), std::string::npos) << err();

    environment_.inIsTerminal = false;
    EXPECT_EQ(run({"list", "-"}), 0);
    EXPECT_NE(err().find("Loading"), std::string::npos) << err();
}

TEST_F(StandardInputTest, HasItsNameInErrors)
{
    book_.onRead = [] { throw std::bad_alloc(); };

    for (const Texts& arguments : {Texts{"list", "-"}, Texts{"show", "-", "ben"}}) {
        EXPECT_EQ(run(arguments), 1);
        EXPECT_NE(err().find("“standard input”"), std::string::npos) << err();
    }
}

}  // namespace
}  // namespace dunmora::test
