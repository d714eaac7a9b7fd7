#include "programs/dunmora/PreferencesFailures.h"

#include "tests/fakes/FakeApplication.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;

class PreferencesFailuresTest : public testing::Test {
protected:
    PreferencesFailuresTest()
    {
        platform_.alert.onRunModal = [this](const AlertContent& content) {
            EXPECT_EQ(content.style, AlertStyle::Failure);
            EXPECT_EQ(content.defaultButton, "OK");
            EXPECT_EQ(content.alternateButton, std::nullopt);
            log_.push_back(content.messageText);
            onAlert_();
            return Alert::kDefaultButton;
        };
    }

    FakePlatform platform_;
    /// The messages that the user has seen, among what the test adds.
    Lines log_;
    std::function<void()> onAlert_ = [] {};
    FakeApplication application_;
    PreferencesFailures failures_{application_};
};

TEST_F(PreferencesFailuresTest, AreKeptWhileTheProgramStarts)
{
    failures_.report("Not loaded.");
    failures_.report("Not saved.");
    application_.runUntilIdle();
    EXPECT_EQ(log_, Lines());

    failures_.showAtLaunch();

    EXPECT_EQ(log_, (Lines{"Not loaded.", "Not saved."}));
    EXPECT_EQ(application_.threads, Lines());
}

TEST_F(PreferencesFailuresTest, ShowNothingAtALaunchWithoutAny)
{
    failures_.showAtLaunch();

    EXPECT_EQ(log_, Lines());
}

TEST_F(PreferencesFailuresTest, DoNotHoldUpTheMainThread)
{
    failures_.showAtLaunch();
    // The alert waits for the main thread.
    onAlert_ = [&] { application_.performOnMainThread([] {}); };

    failures_.report("Not saved.");
    application_.runUntilIdle();

    EXPECT_EQ(log_, Lines{"Not saved."});
    EXPECT_EQ(application_.threads.size(), 1U);
}

TEST_F(PreferencesFailuresTest, HoldUpAJobUntilTheUserResponds)
{
    failures_.showAtLaunch();

    application_.detachNewThread("LoadContacts", [&] {
        failures_.report("Not saved.");
        log_.emplace_back("load");
    });
    application_.runUntilIdle();

    EXPECT_EQ(log_, (Lines{"Not saved.", "load"}));
    EXPECT_EQ(application_.threads, Lines{"LoadContacts"});
}

TEST_F(PreferencesFailuresTest, CanBeReportedWhileOneIsShownAtLaunch)
{
    failures_.report("Not loaded.");
    onAlert_ = [&] {
        if (log_.size() == 1) {
            failures_.report("Not saved.");
        }
    };

    failures_.showAtLaunch();
    application_.runUntilIdle();

    EXPECT_EQ(log_, (Lines{"Not loaded.", "Not saved."}));
}

TEST_F(PreferencesFailuresTest, AreNotShownWhenNoThreadCanBeStarted)
{
    failures_.showAtLaunch();
    application_.onDetach = [](std::string_view /*name*/) {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    };

    EXPECT_NO_THROW(failures_.report("Not saved."));

    EXPECT_EQ(log_, Lines());
}

}  // namespace
}  // namespace dunmora::test
