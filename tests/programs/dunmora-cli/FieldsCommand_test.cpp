#include "tests/programs/dunmora-cli/CliTest.h"

#include <map>

namespace dunmora::test {
namespace {

/// Preferences that cannot be written to disk.
class UnwritableUserDefaults final : public UserDefaults {
public:
    bool hasValue(std::string_view key) const override { return memory_.hasValue(key); }
    bool boolForKey(std::string_view key) const override { return memory_.boolForKey(key); }
    void setBool(std::string_view key, bool value) override { memory_.setBool(key, value); }
    bool synchronize() override { return false; }

private:
    FakeUserDefaults memory_;
};

using FieldsTest = CliTest;

TEST_F(FieldsTest, ShowsTheFieldsOfAFreshInstallation)
{
    EXPECT_EQ(run({"fields"}), 0);
    EXPECT_EQ(out(), "firstname,lastname\n");
    EXPECT_EQ(err(), "");
    EXPECT_TRUE(userDefaults_.onDisk().empty());
}

TEST_F(FieldsTest, ShowsTheFieldsInTheOrderOfTheKey)
{
    EXPECT_EQ(run({"fields", "mobile, work,home,lastname,firstname,nickname"}), 0);
    EXPECT_EQ(out(), "nickname,firstname,lastname,home,work,mobile\n");
}

TEST_F(FieldsTest, StoresAllSixFlags)
{
    EXPECT_EQ(run({"fields", "nickname,mobile"}), 0);
    EXPECT_EQ(out(), "nickname,mobile\n");

    const std::map<std::string, bool, std::less<>> expected{
        {"filterFirstname", false}, {"filterLastname", false}, {"filterNickname", true},
        {"filterHome", false},      {"filterWork", false},     {"filterMobile", true}};
    EXPECT_EQ(userDefaults_.onDisk(), expected);
    run({"fields"});
    EXPECT_EQ(out(), "nickname,mobile\n");
}

TEST_F(FieldsTest, KeepsTheStoredFieldsWhenAskedForNone)
{
    EXPECT_EQ(run({"fields", " "}), 2);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "You should choose at least one field as match condition!\n");
    EXPECT_TRUE(userDefaults_.onDisk().empty());
}

TEST_F(FieldsTest, ReportsThatNoFieldIsStored)
{
    userDefaults_.setBool("filterFirstname", false);
    userDefaults_.setBool("filterLastname", false);

    EXPECT_EQ(run({"fields"}), 2);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "You should choose at least one field as match condition!\n");
}

TEST_F(FieldsTest, ReportsThatTheFieldsCannotBeStored)
{
    UnwritableUserDefaults unwritable;
    const CliEnvironment environment{
        environment_.openAddressBook, unwritable, bundle_, in_, out_, err_};
    const std::vector<std::string> arguments{"fields", "home"};

    EXPECT_EQ(runCli(arguments, environment), 1);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(err(), "dunmora-cli: The match fields could not be stored.\n");
}

TEST_F(FieldsTest, OpensNoAddressBook)
{
    run({"fields", "home"});

    EXPECT_TRUE(opened_.empty());
}

}  // namespace
}  // namespace dunmora::test
