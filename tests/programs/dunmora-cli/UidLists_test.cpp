#include "programs/dunmora-cli/UidLists.h"

#include "platform/PlatformError.h"
#include "tests/programs/dunmora-cli/CliTest.h"

#include <fstream>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

class UidListsTest : public CliTest {
protected:
    void SetUp() override { bookHoldsAnnTwice(); }

    /// A file with this content.
    std::string listOf(const std::string& name, const std::string& content) const
    {
        const auto file = folder_.path() / name;
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }

    Texts read(const std::string& content)
    {
        return readUidLists(Texts{listOf("uids", content)}, false, environment_);
    }

    void expectWrongUse(const Texts& arguments, const std::string& text)
    {
        EXPECT_EQ(run(arguments), 2) << text;
        EXPECT_EQ(err(), "dunmora-cli: " + text + '\n');
        EXPECT_EQ(book_.writes(), 0U);
    }

    TemporaryFolder folder_;
};

TEST_F(UidListsTest, HaveOneUidPerLine)
{
    EXPECT_EQ(read("a\nb c\r\n\n  \r\n#d\ne"), (Texts{"a", "b c", "#d", "e"}));
    EXPECT_EQ(read(" a \n"), (Texts{" a "}));
    EXPECT_EQ(read("\xEF\xBB\xBF"
                   "a\n"),
              (Texts{"a"}));
    EXPECT_EQ(read("\n"), Texts());
    EXPECT_EQ(read(""), Texts());
}

TEST_F(UidListsTest, CheckAndUncheckPeople)
{
    EXPECT_EQ(
        run({"delete", "b", "--yes", "--allow-last-copy", "--check-from",
             listOf("check", "ann-1\nben\n"), "--uncheck-from", listOf("uncheck", "ann-2\n")}),
        0);
    EXPECT_EQ(book_.storedUids(), (Texts{"ann-2"}));
}

TEST_F(UidListsTest, JoinTheOptionsForOnePersonAndMayBeRepeated)
{
    EXPECT_EQ(run({"delete", "b", "--yes", "--allow-last-copy", "--uncheck", "ann-2",
                   "--check-from", listOf("one", "ann-1"), "--check-from", listOf("two", "ben")}),
              0);
    EXPECT_EQ(book_.storedUids(), (Texts{"ann-2"}));
}

TEST_F(UidListsTest, MayComeFromStandardInput)
{
    typed_ = "ann-2\nben\n";
    EXPECT_EQ(run({"delete", "b", "--yes", "--allow-last-copy", "--check-from", "-"}), 0);
    EXPECT_EQ(book_.storedUids(), (Texts{"ann-1"}));
    EXPECT_EQ(err(), "");
}

TEST_F(UidListsTest, SayOnATerminalWhatIsExpected)
{
    environment_.inIsTerminal = true;
    typed_ = "ann-2\n";

    EXPECT_EQ(run({"delete", "b", "--dry-run", "--uncheck-from", "-"}), 0);
    EXPECT_TRUE(err().starts_with("dunmora-cli: Type or paste UIDs, one per line, then press Enter "
                                  "and Ctrl+D. Ctrl+C cancels.\n"))
        << err();
}

TEST_F(UidListsTest, NeedYesFromStandardInput)
{
    everythingIsATerminal();
    expectWrongUse({"delete", "b", "--check-from", "-"},
                   "delete needs --yes when it reads UIDs from standard input, because it cannot "
                   "ask there.");
}

TEST_F(UidListsTest, AreReadFromStandardInputOnlyOnce)
{
    const std::string kText = "Only one list of UIDs can be read from standard input.";
    expectWrongUse({"delete", "b", "--yes", "--check-from", "-", "--uncheck-from", "-"}, kText);
    expectWrongUse({"delete", "b", "--yes", "--check-from", "-", "--check-from", "-"}, kText);
}

TEST_F(UidListsTest, AreRefusedForTheSameReasonsAsTheOptionsForOnePerson)
{
    const auto list = listOf("uids", "ben\nnobody\n");
    expectWrongUse({"delete", "b", "--yes", "--check-from", list}, "Nobody has the uid “nobody”.");
    expectWrongUse({"delete", "b", "--yes", "--uncheck-from", list},
                   "Nobody has the uid “nobody”.");
    expectWrongUse(
        {"delete", "b", "--yes", "--check", "ben", "--uncheck-from", listOf("ben", "ben")},
        "“ben” is to be both checked and unchecked.");
    expectWrongUse({"delete", "b", "--yes", "--check-from="},
                   "The file name of a list of UIDs is empty.");
}

TEST_F(UidListsTest, ThatCannotBeReadDeleteNobody)
{
    const auto missing = (folder_.path() / "none").string();
    EXPECT_EQ(run({"delete", "b", "--yes", "--uncheck-from", missing}), 1);
    EXPECT_EQ(err(), "dunmora-cli: “" + missing + "” cannot be read: No such file or directory.\n");

    environment_.readStandardInput = [](std::uintmax_t) -> std::string {
        throw PlatformError("“standard input” cannot be read.");
    };
    EXPECT_EQ(run({"delete", "b", "--yes", "--uncheck-from", "-"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: “standard input” cannot be read.\n");
    EXPECT_EQ(book_.storedUids().size(), 3U);
    EXPECT_TRUE(opened_.empty());
}

}  // namespace
}  // namespace dunmora::test
