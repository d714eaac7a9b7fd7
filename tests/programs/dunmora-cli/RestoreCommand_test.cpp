#include "platform/PlatformError.h"
#include "programs/dunmora-cli/ShellText.h"
#include "tests/fakes/FakeCard.h"
#include "tests/programs/dunmora-cli/CliTest.h"
#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <array>
#include <cstdio>
#include <fstream>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;

class RestoreCommandTest : public CliTest {
protected:
    /// Writes a backup of these people and returns its path.
    std::string backupOf(const std::vector<FakePerson>& people)
    {
        const auto file = folder_.path() / "backup.vcf";
        std::ofstream stream(file, std::ios::binary);
        for (const auto& person : people) {
            stream << cardOf(person);
        }
        return file.string();
    }

    TemporaryFolder folder_;
};

TEST_F(RestoreCommandTest, PutsThePeopleOfABackupBack)
{
    bookHolds({named("ben", "Ben")});
    const auto backup = backupOf({named("ann", "Ann"), named("ben", "Ben"), named("cid", "Cid")});

    EXPECT_EQ(run({"restore", backup, "b", "--yes"}), 0);

    EXPECT_EQ(opened_, Uids{"b"});
    EXPECT_EQ(book_.storedUids(), (Uids{"ben", "ann", "cid"}));
    EXPECT_EQ(out(), "2 people restored.\n1 person is there already.\n");
    EXPECT_EQ(err(), "");
}

TEST_F(RestoreCommandTest, NeedsYesWithoutATerminal)
{
    const auto backup = backupOf({named("ann", "Ann")});

    EXPECT_EQ(run({"restore", backup, "b"}), 2);

    EXPECT_EQ(err(), "dunmora-cli: restore needs --yes when it cannot ask on a terminal.\n");
    EXPECT_TRUE(opened_.empty());
}

TEST_F(RestoreCommandTest, AsksOnATerminal)
{
    everythingIsATerminal();
    const auto backup = backupOf({named("ann", "Ann")});

    typed_ = "\n";
    EXPECT_EQ(run({"restore", backup, "b.vcf"}), 1);
    EXPECT_EQ(err(), "Confirm to restore\n1 person of the backup will be added to “b.vcf”.\nDo you "
                     "really want to continue?\nOkay/Cancel [y/N] dunmora-cli: Nobody was "
                     "restored.\n");
    EXPECT_EQ(book_.storedUids(), Uids());

    typed_ = "y\n";
    EXPECT_EQ(run({"restore", backup, "b.vcf"}), 0);
    EXPECT_EQ(out(), "1 person restored.\n");
    EXPECT_EQ(book_.storedUids(), Uids{"ann"});
}

TEST_F(RestoreCommandTest, DoesNotAskWhenNobodyIsMissing)
{
    everythingIsATerminal();
    bookHolds({named("ann", "Ann")});

    EXPECT_EQ(run({"restore", backupOf({named("ann", "Ann")}), "b"}), 0);

    EXPECT_EQ(out(), "0 people restored.\n1 person is there already.\n");
    EXPECT_EQ(err(), "");
}

TEST_F(RestoreCommandTest, WritesNothingInADryRun)
{
    const auto backup = backupOf({named("ann", "Ann")});
    for (const auto& more : {Uids{}, Uids{"--yes"}}) {
        Uids arguments{"restore", backup, "b", "--dry-run"};
        arguments.insert(arguments.end(), more.begin(), more.end());

        EXPECT_EQ(run(arguments), 0);

        EXPECT_EQ(out(), "1 person would be restored.\n");
        EXPECT_EQ(book_.writes(), 0U);
    }
}

TEST_F(RestoreCommandTest, NamesPeopleWhoCouldNotBeRestored)
{
    bookHolds({named("ann", "Somebody", "Else")});
    const auto backup = backupOf({named("ann", "Ann"), named("ben", "Ben")});

    EXPECT_EQ(run({"restore", backup, "b", "--yes", "--quiet"}), 1);

    EXPECT_EQ(out(), "1 person restored.\n");
    EXPECT_TRUE(err().starts_with("dunmora-cli: “Ann”")) << err();
    EXPECT_EQ(book_.storedUids(), (Uids{"ann", "ben"}));
}

TEST_F(RestoreCommandTest, PrintsJson)
{
    bookHolds({named("ann", "Somebody", "Else"), named("cid", "Cid")});
    const auto backup = backupOf({named("ann", "Ann"), named("ben", "Ben"), named("cid", "Cid")});

    EXPECT_EQ(run({"restore", backup, "b", "--dry-run", "--format", "json"}), 1);

    EXPECT_EQ(jsonAt(out()), jsonAt(R"({"schema":1,"dryRun":true,"restored":1,"present":1,
        "failures":["“Ann” was not put back: somebody else has the same UID now."],
        "remarks":[]})"));
}

TEST_F(RestoreCommandTest, ReportsABackupThatCannotBeUsed)
{
    const auto missing = (folder_.path() / "none.vcf").string();
    EXPECT_EQ(run({"restore", missing, "b", "--yes"}), 1);
    EXPECT_NE(err().find(missing), std::string::npos) << err();
    EXPECT_TRUE(opened_.empty());

    EXPECT_EQ(run({"restore", backupOf({}), "b", "--yes"}), 1);
    EXPECT_EQ(err(), "dunmora-cli: The backup contains no vCards.\n");

    EXPECT_EQ(run({"restore", "", "b", "--yes"}), 2);
    EXPECT_EQ(run({"restore", missing}), 2);
    EXPECT_EQ(run({"restore", missing, ""}), 2);
}

TEST_F(RestoreCommandTest, RefusesABookIntoWhichNobodyCanBeRestored)
{
    environment_.openAddressBook = [&](const std::string& /*name*/) {
        auto book = lent(book_);
        book.cardRestorer = nullptr;
        return book;
    };

    EXPECT_EQ(run({"restore", backupOf({named("ann", "Ann")}), "b", "--yes"}), 1);

    EXPECT_EQ(err(), "dunmora-cli: Nobody can be restored into this address book.\n");

    bookHoldsAnnTwice();
    const auto backup = (folder_.path() / "removed.vcf").string();
    EXPECT_EQ(run({"delete", "b", "--yes", "--backup", backup}), 0);
    EXPECT_EQ(err().find("restore"), std::string::npos) << err();
}

TEST_F(RestoreCommandTest, IsNamedByADeletionWithABackup)
{
    bookHoldsAnnTwice();
    const auto backup = (folder_.path() / "my backup.vcf").string();

    EXPECT_EQ(run({"delete", "contacts.vcf", "--yes", "--backup", backup}), 0);

    EXPECT_TRUE(err().ends_with("dunmora-cli: To put these people back: dunmora-cli restore '" +
                                backup + "' contacts.vcf\n"))
        << err();
    EXPECT_EQ(run({"restore", backup, "contacts.vcf", "--yes"}), 0);
    EXPECT_EQ(out(), "1 person restored.\n");
    EXPECT_EQ(book_.storedUids().size(), 3U);
}

TEST_F(RestoreCommandTest, IsNotNamedWithoutABackupOrWhenOnlyErrorsAreShown)
{
    const auto backup = (folder_.path() / "backup.vcf").string();
    for (const auto& options : {Uids{"--yes"}, Uids{"--dry-run", "--backup", backup},
                                Uids{"--yes", "--quiet", "--backup", backup}}) {
        bookHoldsAnnTwice();
        Uids arguments{"delete", "contacts.vcf"};
        arguments.insert(arguments.end(), options.begin(), options.end());

        EXPECT_EQ(run(arguments), 0);

        EXPECT_EQ(err().find("restore"), std::string::npos) << err();
    }
}

TEST_F(RestoreCommandTest, IsNamedForOneBookAfterADeletionFromSeveral)
{
    environment_.severalBooksName = "all:";
    bookHoldsAnnTwice();
    const auto backup = (folder_.path() / "backup.vcf").string();

    EXPECT_EQ(run({"delete", "all:", "--yes", "--backup", backup}), 0);

    EXPECT_TRUE(
        err().ends_with("restore " + backup + " all:UID (for the UID of one address book)\n"))
        << err();
}

/// What a shell reads the word as.
std::string readByShell(const std::string& word, const std::filesystem::path& folder)
{
    const auto script = folder / "script";
    std::ofstream(script, std::ios::binary) << "printf %s " << word;
    // NOLINTNEXTLINE(cert-env33-c): the script is the test's own
    auto* const pipe = popen(("bash '" + script.string() + "'").c_str(), "r");
    std::string text;
    std::array<char, 256> part{};
    for (std::size_t count = 0; (count = fread(part.data(), 1, part.size(), pipe)) > 0;) {
        text.append(part.data(), count);
    }
    pclose(pipe);
    return text;
}

TEST(ShellText, IsReadByAShellAsOneWord)
{
    const TemporaryFolder folder;
    for (const std::string text :
         {"contacts.vcf", "/home/ann/my contacts.vcf", "it's", "$HOME `id` \"$(id)\" \\ ! * ~", "~",
          "Grün.vcf", "a\nb", "\x1B[31mred", "B\xE9n", "a\nb' c1", "--yes", "a;b&c|d<e>f#g"}) {
        EXPECT_EQ(readByShell(quotedForShell(text), folder.path()), text) << text;
    }
    EXPECT_EQ(quotedForShell(""), "''");
}

TEST(ShellText, ShowsPlainNamesAsTheyAreAndHidesControls)
{
    EXPECT_EQ(quotedForShell("/tmp/a-b_c.vcf"), "/tmp/a-b_c.vcf");
    EXPECT_EQ(quotedForShell("eds:c0ffee"), "eds:c0ffee");
    EXPECT_EQ(quotedForShell("Grün"), "'Grün'");
    EXPECT_EQ(quotedForShell("Grün", Charset("ISO-8859-1")), "$'Gr\\xc3\\xbcn'")
        << "the bytes of the name, whatever the terminal can show";
    EXPECT_EQ(quotedForShell("\x1B[2J"), "$'\\x1b\\x5b2J'");
}

}  // namespace
}  // namespace dunmora::test
