#include "base/Settings.h"

#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <map>
#include <thread>

namespace dunmora::test {
namespace {

class SettingsTest : public testing::Test {
protected:
    FakePlatform platform_;
    Settings& settings_ = Settings::settings();
};

TEST_F(SettingsTest, MatchOnFirstAndLastNameAloneInAFreshInstallation)
{
    EXPECT_TRUE(settings_.filterFirstname());
    EXPECT_TRUE(settings_.filterLastname());
    EXPECT_FALSE(settings_.filterNickname());
    EXPECT_FALSE(settings_.filterHome());
    EXPECT_FALSE(settings_.filterWork());
    EXPECT_FALSE(settings_.filterMobile());
    EXPECT_TRUE(settings_.isFirstRun());
}

TEST_F(SettingsTest, StoreNoDefaultValues)
{
    settings_.filterFirstname();
    settings_.isFirstRun();

    EXPECT_FALSE(platform_.userDefaults.hasValue("filterFirstname"));
    EXPECT_FALSE(platform_.userDefaults.hasValue("isFirstRun"));
}

TEST_F(SettingsTest, DistinguishAStoredFalseFromAnAbsentKey)
{
    settings_.setFilterFirstname(false);

    EXPECT_TRUE(platform_.userDefaults.hasValue("filterFirstname"));
    EXPECT_FALSE(settings_.filterFirstname());
}

TEST_F(SettingsTest, SeeTheChangesOfOtherWritersAtOnce)
{
    EXPECT_FALSE(settings_.filterHome());

    platform_.userDefaults.setBool("filterHome", true);

    EXPECT_TRUE(settings_.filterHome());
}

TEST_F(SettingsTest, StoreAllMatchFieldsAsOneChange)
{
    settings_.setFilterFirstname(false);

    EXPECT_TRUE(settings_.setMatchFields(MatchFieldChoice("100001")));

    const std::map<std::string, bool, std::less<>> expected{
        {"filterFirstname", false}, {"filterLastname", false}, {"filterNickname", true},
        {"filterHome", false},      {"filterWork", false},     {"filterMobile", true}};
    EXPECT_EQ(platform_.userDefaults.onDisk(), expected);
    EXPECT_EQ(platform_.userDefaults.changes(), 2);
}

TEST_F(SettingsTest, AreOneInstanceOnEveryThread)
{
    Settings* fromWorker = nullptr;
    std::thread([&] { fromWorker = &Settings::settings(); }).join();

    EXPECT_EQ(fromWorker, &Settings::settings());
}

struct Flag {
    const char* key;
    bool (Settings::*get)() const;
    void (Settings::*set)(bool);
};

class SettingsFlagTest : public testing::TestWithParam<Flag> {
protected:
    FakePlatform platform_;
};

TEST_P(SettingsFlagTest, IsOnTheDiskUnderItsKeyWhenTheSetterReturns)
{
    auto& settings = Settings::settings();

    for (const bool value : {true, false, true}) {
        (settings.*GetParam().set)(value);

        EXPECT_EQ((settings.*GetParam().get)(), value);
        const std::map<std::string, bool, std::less<>> expected{{GetParam().key, value}};
        EXPECT_EQ(platform_.userDefaults.onDisk(), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, SettingsFlagTest,
    testing::Values(Flag{"filterFirstname", &Settings::filterFirstname,
                         &Settings::setFilterFirstname},
                    Flag{"filterLastname", &Settings::filterLastname, &Settings::setFilterLastname},
                    Flag{"filterNickname", &Settings::filterNickname, &Settings::setFilterNickname},
                    Flag{"filterHome", &Settings::filterHome, &Settings::setFilterHome},
                    Flag{"filterWork", &Settings::filterWork, &Settings::setFilterWork},
                    Flag{"filterMobile", &Settings::filterMobile, &Settings::setFilterMobile},
                    Flag{"isFirstRun", &Settings::isFirstRun, &Settings::setIsFirstRun}),
    [](const auto& flag) { return std::string(flag.param.key); });

TEST_F(SettingsTest, MsgBoxShowsTheTextWithOneOkButtonAndNothingElse)
{
    const int pressed = Settings::MsgBox("No contact checked to be deleted!");

    EXPECT_EQ(pressed, Alert::kDefaultButton);
    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    const auto& shown = platform_.alert.shown.front();
    EXPECT_EQ(shown.messageText, "No contact checked to be deleted!");
    EXPECT_EQ(shown.informativeText, "");
    EXPECT_EQ(shown.defaultButton, "OK");
    EXPECT_FALSE(shown.alternateButton.has_value());
}

TEST_F(SettingsTest, SupportStartsAMessageToTheSupportAddress)
{
    Settings::Support();

    ASSERT_EQ(platform_.workspace.opened.size(), 1U);
    EXPECT_EQ(platform_.workspace.opened.front(), "mailto:" DUNMORA_SUPPORT);
}

TEST_F(SettingsTest, WebsiteOpensTheMakersSite)
{
    Settings::Website();

    ASSERT_EQ(platform_.workspace.opened.size(), 1U);
    EXPECT_EQ(platform_.workspace.opened.front(), DUNMORA_WEBSITE);
}

}  // namespace
}  // namespace dunmora::test
