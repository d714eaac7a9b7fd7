#include "ui/FilterController.h"

#include "base/Settings.h"
#include "tests/fakes/DesktopTest.h"

#include <array>
#include <functional>
#include <utility>

namespace dunmora::test {
namespace {

/// A check box of the dialog and the preference that it shows.
struct Box {
    const char* outlet;
    bool (Settings::*get)() const;
    void (Settings::*set)(bool);
};

constexpr std::array kBoxes = {
    Box{"btnFilterNickname", &Settings::filterNickname, &Settings::setFilterNickname},
    Box{"btnFilterFirstname", &Settings::filterFirstname, &Settings::setFilterFirstname},
    Box{"btnFilterLastname", &Settings::filterLastname, &Settings::setFilterLastname},
    Box{"btnFilterHome", &Settings::filterHome, &Settings::setFilterHome},
    Box{"btnFilterWork", &Settings::filterWork, &Settings::setFilterWork},
    Box{"btnFilterMobile", &Settings::filterMobile, &Settings::setFilterMobile},
};

const std::string kNoField = "You should choose at least one field as match condition!";

class FilterControllerTest : public DesktopTest {
protected:
    using Outlets = std::vector<std::string>;

    /// Shows a new dialog, runs `steps` in it, and returns its result.
    bool show(const std::function<void()>& steps)
    {
        application_.onRunModal = [&](Window& /*window*/) { steps(); };
        FilterController dialog;
        return dialog.showModal();
    }

    FakeCheckBox& box(std::string_view outlet) { return loader_.last->checkBox(outlet); }

    /// Clicks the box, which changes its state before the command runs.
    void click(std::string_view outlet, CheckState state)
    {
        box(outlet).shown = state;
        loader_.last->command("OnCheckBoxes").use(&box(outlet));
    }

    void okay() { loader_.last->command("OnOkay").use(); }
    void cancel() { loader_.last->command("OnCancel").use(); }

    Outlets checkedBoxes()
    {
        Outlets checked;
        for (const auto& each : kBoxes) {
            if (box(each.outlet).state() == CheckState::On) {
                checked.emplace_back(each.outlet);
            }
        }
        return checked;
    }

    Outlets flagsOn() const
    {
        Outlets on;
        for (const auto& each : kBoxes) {
            if ((settings_.*each.get)()) {
                on.emplace_back(each.outlet);
            }
        }
        return on;
    }

    void turnEveryFlagOff()
    {
        for (const auto& each : kBoxes) {
            (settings_.*each.set)(false);
        }
    }

    Settings& settings_ = Settings::settings();
};

TEST_F(FilterControllerTest, LoadsItsWindowOnlyWhenItIsShown)
{
    FilterController dialog;

    EXPECT_EQ(calls(), Calls());
    EXPECT_FALSE(dialog.isModal());
}

TEST_F(FilterControllerTest, ChecksFirstAndLastNameAloneOnTheVeryFirstShowing)
{
    Outlets checked;

    show([&] {
        checked = checkedBoxes();
        cancel();
    });

    EXPECT_EQ(checked, (Outlets{"btnFilterFirstname", "btnFilterLastname"}));
}

TEST_F(FilterControllerTest, SetsEveryBoxFromItsFlagInTheirOrder)
{
    settings_.setFilterNickname(true);
    settings_.setFilterLastname(false);
    settings_.setFilterMobile(true);

    show([&] { cancel(); });

    EXPECT_EQ(calls(), (Calls{"load FilterWindow", "FilterWindow.btnFilterNickname setState 1",
                              "FilterWindow.btnFilterFirstname setState 1",
                              "FilterWindow.btnFilterLastname setState 0",
                              "FilterWindow.btnFilterHome setState 0",
                              "FilterWindow.btnFilterWork setState 0",
                              "FilterWindow.btnFilterMobile setState 1", "FilterWindow close"}));
}

TEST_F(FilterControllerTest, ClearsAllSixBoxesWhenEveryFlagIsFalse)
{
    turnEveryFlagOff();
    std::vector<CheckState> states;

    show([&] {
        for (const auto& each : kBoxes) {
            states.push_back(box(each.outlet).state());
        }
        cancel();
    });

    EXPECT_EQ(states, std::vector<CheckState>(6, CheckState::Off));
}

TEST_F(FilterControllerTest, StaysOpenWithAMessageWhenNoFieldIsChosenAndClosesOnceOneIs)
{
    turnEveryFlagOff();
    std::size_t sessionsEnded = 99;
    Calls closings;

    const bool confirmed = show([&] {
        log_.clear();
        okay();
        sessionsEnded = application_.abortedSessions;
        closings = calls();
        click("btnFilterMobile", CheckState::On);
        okay();
    });

    EXPECT_TRUE(confirmed);
    EXPECT_EQ(sessionsEnded, 0U);
    EXPECT_EQ(closings, Calls());
    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    EXPECT_EQ(platform_.alert.shown[0].messageText, kNoField);
    EXPECT_EQ(platform_.alert.shown[0].informativeText, "");
    EXPECT_EQ(platform_.alert.shown[0].defaultButton, "OK");
    EXPECT_EQ(platform_.alert.shown[0].alternateButton, std::nullopt);
    EXPECT_EQ(application_.abortedSessions, 1U);
}

TEST_F(FilterControllerTest, ReturnsFalseWhenItIsCancelledAfterARefusedConfirmation)
{
    turnEveryFlagOff();

    EXPECT_FALSE(show([&] {
        okay();
        cancel();
    }));
}

TEST_F(FilterControllerTest, ReturnsFalseWhenItIsCancelledAfterAnEarlierConfirmation)
{
    FilterController dialog;
    application_.onRunModal = [&](Window& /*window*/) { okay(); };
    EXPECT_TRUE(dialog.showModal());

    application_.onRunModal = [&](Window& /*window*/) { cancel(); };

    EXPECT_FALSE(dialog.showModal());
}

TEST_F(FilterControllerTest, EndsItsSessionBeforeItClosesItsWindow)
{
    /// Records how many sessions had ended when the window closed.
    class ClosingWitness final : public WindowDelegate {
    public:
        explicit ClosingWitness(FakeApplication& application) : application_(application) {}
        void windowWillClose() override { ended.push_back(application_.abortedSessions); }

        std::vector<std::size_t> ended;

    private:
        FakeApplication& application_;
    };
    ClosingWitness witness(application_);

    show([&] {
        loader_.last->fakeWindow.setDelegate(&witness);
        okay();
    });
    show([&] {
        loader_.last->fakeWindow.setDelegate(&witness);
        cancel();
    });

    EXPECT_EQ(witness.ended, (std::vector<std::size_t>{1, 2}));
    EXPECT_EQ(application_.abortsWithoutSession, 0U);
}

TEST_F(FilterControllerTest, StoresEveryClickAtOnce)
{
    bool storedBeforeTheEnd = false;

    show([&] {
        click("btnFilterHome", CheckState::On);
        const auto onDisk = platform_.userDefaults.onDisk();
        storedBeforeTheEnd = onDisk.contains("filterHome") && onDisk.at("filterHome");
        cancel();
    });

    EXPECT_TRUE(storedBeforeTheEnd);
}

TEST_F(FilterControllerTest, KeepsTheChangesOfACancelledDialogAndReturnsFalse)
{
    const bool confirmed = show([&] {
        click("btnFilterLastname", CheckState::Off);
        click("btnFilterWork", CheckState::On);
        cancel();
    });

    EXPECT_FALSE(confirmed);
    EXPECT_EQ(flagsOn(), (Outlets{"btnFilterFirstname", "btnFilterWork"}));
}

TEST_F(FilterControllerTest, OpensWithEveryBoxClearedAfterAllWereClearedAndTheDialogCancelled)
{
    Outlets checked{"not seen"};

    const bool confirmed = show([&] {
        click("btnFilterFirstname", CheckState::Off);
        click("btnFilterLastname", CheckState::Off);
        cancel();
    });
    show([&] {
        checked = checkedBoxes();
        cancel();
    });

    EXPECT_FALSE(confirmed);
    EXPECT_EQ(flagsOn(), Outlets());
    EXPECT_EQ(checked, Outlets());
    EXPECT_TRUE(platform_.alert.shown.empty());
}

TEST_F(FilterControllerTest, CountsAMixedStateAsOff)
{
    show([&] {
        click("btnFilterFirstname", CheckState::Mixed);
        cancel();
    });

    EXPECT_EQ(flagsOn(), Outlets{"btnFilterLastname"});
    EXPECT_TRUE(platform_.userDefaults.hasValue("filterFirstname"));
}

TEST_F(FilterControllerTest, IgnoresASenderThatIsNotOneOfItsBoxes)
{
    show([&] {
        auto& stranger = loader_.last->checkBox("btnOther");
        stranger.shown = CheckState::On;
        loader_.last->command("OnCheckBoxes").use(&stranger);
        loader_.last->command("OnCheckBoxes").use(nullptr);
        cancel();
    });

    EXPECT_TRUE(platform_.userDefaults.onDisk().empty());
}

TEST_F(FilterControllerTest, IgnoresAMissingSenderBeforeItsWindowIsLoaded)
{
    FilterController dialog;

    dialog.OnCheckBoxes(nullptr);

    EXPECT_TRUE(platform_.userDefaults.onDisk().empty());
}

TEST_F(FilterControllerTest, ReturnsFalseAtOnceWithoutASessionWhenItsInterfaceIsMissing)
{
    loader_.missing.insert("FilterWindow");
    bool ran = false;

    EXPECT_FALSE(show([&] { ran = true; }));

    EXPECT_FALSE(ran);
    EXPECT_TRUE(platform_.alert.shown.empty());
}

class FilterBoxTest : public FilterControllerTest, public testing::WithParamInterface<Box> {};

TEST_P(FilterBoxTest, WritesItsOwnFlagAndNoOther)
{
    turnEveryFlagOff();
    Outlets afterOn;
    Outlets afterOff;

    show([&] {
        click(GetParam().outlet, CheckState::On);
        afterOn = flagsOn();
        click(GetParam().outlet, CheckState::Off);
        afterOff = flagsOn();
        cancel();
    });

    EXPECT_EQ(afterOn, Outlets{GetParam().outlet});
    EXPECT_EQ(afterOff, Outlets());
}

TEST_P(FilterBoxTest, IsEnoughToConfirm)
{
    turnEveryFlagOff();

    EXPECT_TRUE(show([&] {
        click(GetParam().outlet, CheckState::On);
        okay();
    }));

    EXPECT_TRUE(platform_.alert.shown.empty());
}

INSTANTIATE_TEST_SUITE_P(All, FilterBoxTest, testing::ValuesIn(kBoxes),
                         [](const auto& box) { return std::string(box.param.outlet); });

/// How many preferences are read until this one, the only one that is on, is found.
class FilterOrderTest : public FilterControllerTest,
                        public testing::WithParamInterface<std::pair<const char*, int>> {};

TEST_P(FilterOrderTest, OfTheConfirmationStopsAtTheFirstFlagThatIsOn)
{
    turnEveryFlagOff();
    int asked = 0;

    show([&] {
        click(GetParam().first, CheckState::On);
        const int before = platform_.userDefaults.reads();
        okay();
        asked = platform_.userDefaults.reads() - before;
    });

    EXPECT_EQ(asked, GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    All, FilterOrderTest,
    testing::Values(std::pair{"btnFilterNickname", 1}, std::pair{"btnFilterFirstname", 2},
                    std::pair{"btnFilterLastname", 3}, std::pair{"btnFilterWork", 4},
                    std::pair{"btnFilterHome", 5}, std::pair{"btnFilterMobile", 6}),
    [](const auto& order) { return std::string(order.param.first); });

}  // namespace
}  // namespace dunmora::test
