#include "update/UpdateController.h"

#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

namespace {

using namespace std::string_literals;

constexpr auto kAutomatic = "AutoCheckForUpdates";
constexpr auto kLatest = "You are running the latest version.";
// The running version is 0.1.
constexpr auto kNewer = "0.2\nhttp://example.com/get\nBetter in every way.";
constexpr auto kSame = "0.1\nhttp://example.com/get\nNothing new.";
constexpr auto kUnreadable = "<html>Not found</html>";

using Calls = std::vector<std::string>;

/// Records in one log the calls whose order matters.
struct RecordingDesktop : FakeDesktop {
    explicit RecordingDesktop(FakePlatform& platform)
    {
        auto& log = interfaceLoader.log;
        interfaceLoader.onLoad = [&log](FakeInterface& interface) {
            const auto record = [&log](const std::string& name, auto& control) {
                control.onSetHidden = [&log, name](bool hidden) {
                    log.add((hidden ? "hide " : "show ") + name);
                };
            };
            record("vwControls", interface.view("vwControls"));
            record("vwActivity", interface.view("vwActivity"));
            record("btnDownload", interface.button("btnDownload"));
        };
        connections.onOpen = [&log] { log.add("open a connection"); };
        platform.workspace.onOpenWebPage = [&log](const std::string& url) {
            log.add("open " + url);
        };
    }
};

class UpdateControllerTest : public testing::Test {
protected:
    FakeInterface& interface() const { return *desktop.interfaceLoader.last; }
    bool isShown() { return interface().fakeWindow.isVisible; }
    std::string message() { return interface().textField("labelMessage").stringValue; }
    std::string host() { return interface().textField("labelHost").stringValue; }
    bool offersDownload() { return !interface().button("btnDownload").isHidden; }
    CheckState automatic() { return interface().checkBox("ckUpdate").shown; }

    bool isInBusyLayout()
    {
        return interface().view("vwControls").isHidden && !interface().view("vwActivity").isHidden;
    }
    bool isInResultLayout()
    {
        return !interface().view("vwControls").isHidden && interface().view("vwActivity").isHidden;
    }

    /// The calls in their order, without the line with the host, which follows the button.
    Calls calls() const
    {
        auto calls = desktop.interfaceLoader.log.calls();
        std::erase_if(calls,
                      [](const auto& call) { return call.starts_with("UpdateWindow.labelHost "); });
        return calls;
    }
    void clearCalls() { desktop.interfaceLoader.log.clear(); }

    std::size_t transfers() const { return desktop.connections.opened.size(); }
    FakeConnection& transfer() { return desktop.connections.last(); }

    FakePlatform platform;
    RecordingDesktop desktop{platform};
    UpdateController controller;
};

}  // namespace

TEST_F(UpdateControllerTest, LoadsItsWindowInTheBusyLayoutWithoutShowingIt)
{
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(isInBusyLayout());
    EXPECT_FALSE(offersDownload());
    EXPECT_EQ(interface().fakeWindow.level, WindowLevel::Status);
    EXPECT_EQ(interface().fakeWindow.delegate, &controller);
    EXPECT_EQ(transfers(), 0U);
    EXPECT_EQ(calls(), (Calls{"load UpdateWindow", "hide vwControls", "show vwActivity",
                              "hide btnDownload", "UpdateWindow setLevel status",
                              "UpdateWindow.progressIndicator startAnimation", "hide vwControls",
                              "show vwActivity", "hide btnDownload"}));
}

TEST_F(UpdateControllerTest, HasOneSharedInstance)
{
    auto& shared = UpdateController::updater();

    EXPECT_EQ(&UpdateController::updater(), &shared);
    EXPECT_NE(&shared, &controller);
}

TEST_F(UpdateControllerTest, RequestsTheLatestVersionWithoutAnyUserData)
{
    controller.CheckForUpdate(false);

    ASSERT_EQ(transfers(), 1U);
    EXPECT_EQ(transfer().url, "http://update.dunmora.invalid/update/?app=dunmoraapp");
}

TEST_F(UpdateControllerTest, RequestsItFromTheHostInTheBundle)
{
    platform.bundle.updateHost = "127.0.0.1:8080";

    controller.CheckForUpdate(false);

    EXPECT_EQ(transfer().url, "http://127.0.0.1:8080/update/?app=dunmoraapp");
}

TEST_F(UpdateControllerTest, RequestsItFromNoHostInABuildWithoutAnUpdateService)
{
    platform.bundle.updateHost.reset();

    controller.CheckForUpdate(false);

    EXPECT_EQ(transfer().url, "http:///update/?app=dunmoraapp") << "no adapter can open this";
}

TEST_F(UpdateControllerTest, SendsNothingAtStartUpWhenTheAutomaticCheckIsOff)
{
    platform.userDefaults.setBool(kAutomatic, false);

    controller.CheckForUpdate(false);

    EXPECT_EQ(transfers(), 0U);
    EXPECT_EQ(automatic(), CheckState::Mixed) << "the check box is left untouched";
}

TEST_F(UpdateControllerTest, ChangesNothingAtStartUpWhenTheAutomaticCheckIsOff)
{
    controller.CheckForUpdate(true);
    transfer().reply(kNewer);
    platform.userDefaults.setBool(kAutomatic, false);

    controller.CheckForUpdate(false);

    EXPECT_TRUE(isShown());
    EXPECT_TRUE(isInResultLayout());
    EXPECT_TRUE(offersDownload());
    interface().command("OnDownload").use();
    EXPECT_EQ(platform.workspace.openedPages, Calls{"http://example.com/get"});
}

TEST_F(UpdateControllerTest, ChecksFromTheMenuWhenTheAutomaticCheckIsOffAndShowsThatItIs)
{
    platform.userDefaults.setBool(kAutomatic, false);

    controller.CheckForUpdate(true);

    EXPECT_EQ(transfers(), 1U);
    EXPECT_EQ(automatic(), CheckState::Off);
}

TEST_F(UpdateControllerTest, ChecksAutomaticallyWhenNothingIsStored)
{
    controller.CheckForUpdate(false);

    EXPECT_EQ(transfers(), 1U);
    EXPECT_EQ(automatic(), CheckState::On);
}

TEST_F(UpdateControllerTest, ShowsThatTheAutomaticCheckIsOn)
{
    platform.userDefaults.setBool(kAutomatic, true);

    controller.CheckForUpdate(false);

    EXPECT_EQ(transfers(), 1U);
    EXPECT_EQ(automatic(), CheckState::On);
}

TEST_F(UpdateControllerTest, ShowsItsWindowAfterASilentCheckThatFoundANewerVersion)
{
    controller.CheckForUpdate(false);
    EXPECT_FALSE(isShown());
    transfer().respond();
    transfer().deliver(kNewer);
    EXPECT_FALSE(isShown());

    transfer().finish();

    EXPECT_TRUE(isShown());
    EXPECT_TRUE(isInResultLayout());
    EXPECT_EQ(message(), "Better in every way.");
    EXPECT_TRUE(offersDownload());
}

TEST_F(UpdateControllerTest, TakesTheKeyboardFocusOnlyForACheckThatTheUserRequested)
{
    controller.CheckForUpdate(false);
    transfer().reply(kNewer);
    EXPECT_EQ(interface().fakeWindow.focus, KeyboardFocus::Leave);

    // The offer is still on the screen.
    controller.CheckForUpdate(true);
    EXPECT_EQ(interface().fakeWindow.focus, KeyboardFocus::Take);
}

TEST_F(UpdateControllerTest, ShowsTheBusyLayoutAndThenThatTheVersionIsTheLatest)
{
    clearCalls();
    controller.CheckForUpdate(true);
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(isInBusyLayout());
    EXPECT_EQ(calls(), (Calls{"UpdateWindow.ckUpdate setState 1",
                              "UpdateWindow.progressIndicator startAnimation", "hide vwControls",
                              "show vwActivity", "hide btnDownload", "UpdateWindow show",
                              "open a connection"}));

    clearCalls();
    transfer().reply(kSame);

    EXPECT_EQ(calls(), (Calls{"UpdateWindow.labelMessage setStringValue "s + kLatest,
                              "hide vwActivity", "show vwControls"}));
    EXPECT_TRUE(isInResultLayout());
    EXPECT_EQ(message(), kLatest);
    EXPECT_FALSE(offersDownload());
}

TEST_F(UpdateControllerTest, OffersTheDownloadAfterACheckThatTheUserRequested)
{
    controller.CheckForUpdate(true);
    clearCalls();

    transfer().reply(kNewer);

    EXPECT_TRUE(isInResultLayout());
    EXPECT_TRUE(offersDownload());
    EXPECT_EQ(message(), "Better in every way.");
    EXPECT_EQ(calls(), (Calls{"UpdateWindow.labelMessage setStringValue Better in every way.",
                              "show btnDownload", "hide vwActivity", "show vwControls"}))
        << "the window is not raised again; the user may have put it behind another";
}

TEST_F(UpdateControllerTest, ShowsWhichHostTheOfferedDownloadComesFrom)
{
    platform.workspace.webHosts = {{"http://example.com/get", "example.com"}};
    for (const bool isAsked : {false, true}) {
        controller.CheckForUpdate(isAsked);
        EXPECT_EQ(host(), "");

        transfer().reply(kNewer);

        EXPECT_EQ(host(), "Download opens example.com");
    }
}

TEST_F(UpdateControllerTest, ShowsNoHostWithoutAnOfferOrForAnAddressThatCannotBeOpened)
{
    platform.workspace.webHosts = {{"http://example.com/get", "example.com"}};

    for (const std::string reply :
         {kSame, kUnreadable, "0.2\nfile:///etc/passwd\nBetter in every way."}) {
        controller.CheckForUpdate(true);
        transfer().reply(kNewer);
        controller.CheckForUpdate(true);
        EXPECT_EQ(host(), "") << reply;

        transfer().reply(reply);

        EXPECT_EQ(host(), "") << reply;
    }
}

TEST_F(UpdateControllerTest, ShowsTheHostOfTheAddressThatASilentCheckLeavesToAnEarlierOffer)
{
    platform.workspace.webHosts = {{"http://example.com/get", "example.com"}, {"URL", "other"}};
    controller.CheckForUpdate(true);
    transfer().reply(kNewer);

    controller.CheckForUpdate(false);
    EXPECT_EQ(host(), "") << "the address is forgotten until the reply";
    transfer().reply("0.1\nURL\nText");
    EXPECT_EQ(host(), "Download opens other");

    controller.CheckForUpdate(false);
    transfer().fail("no route");
    EXPECT_EQ(host(), "");
}

TEST_F(UpdateControllerTest, TreatsAnUnreadableReplyAsTheLatestVersion)
{
    controller.CheckForUpdate(true);

    transfer().reply(kUnreadable);

    EXPECT_EQ(message(), kLatest);
    EXPECT_TRUE(isInResultLayout());
    EXPECT_FALSE(offersDownload());
}

TEST_F(UpdateControllerTest, DoesNotShowItsWindowForAnUnreadableReplyToASilentCheck)
{
    controller.CheckForUpdate(false);

    transfer().reply(kUnreadable);

    EXPECT_FALSE(isShown());
    EXPECT_EQ(message(), kLatest);
    EXPECT_TRUE(isInResultLayout());
}

TEST_F(UpdateControllerTest, HoldsTheFinishedTransferOfASilentCheckThatFoundNothing)
{
    controller.CheckForUpdate(false);

    transfer().reply(kSame);

    EXPECT_FALSE(isShown());
    EXPECT_EQ(message(), kLatest);
    EXPECT_TRUE(isInBusyLayout());
    EXPECT_EQ(desktop.connections.opened.back().use_count(), 2) << "the controller also holds it";
}

TEST_F(UpdateControllerTest, ReplacesAHeldTransferWithTheNextCheck)
{
    controller.CheckForUpdate(false);
    transfer().reply(kSame);

    controller.CheckForUpdate(true);

    EXPECT_EQ(desktop.connections.opened.front().use_count(), 1);
    EXPECT_FALSE(desktop.connections.opened.front()->isCancelled);
    transfer().reply(kNewer);
    EXPECT_EQ(message(), "Better in every way.") << "the bodies are not joined";
}

TEST_F(UpdateControllerTest, ReleasesAHeldTransferWhenTheWindowCloses)
{
    controller.CheckForUpdate(false);
    transfer().reply(kSame);

    interface().fakeWindow.close();

    EXPECT_EQ(desktop.connections.opened.back().use_count(), 1);
}

TEST_F(UpdateControllerTest, KeepsTheDownloadAddressWhenUpToDate)
{
    controller.CheckForUpdate(true);
    transfer().reply(kSame);

    interface().command("OnDownload").use();

    EXPECT_EQ(platform.workspace.openedPages, Calls{"http://example.com/get"});
}

TEST_F(UpdateControllerTest, TakesNoDownloadAddressFromAnUnreadableReply)
{
    controller.CheckForUpdate(true);
    transfer().reply("0.2\nhttp://example.com/get\nText\n");

    interface().command("OnDownload").use();

    EXPECT_EQ(platform.workspace.openedPages, Calls{""});
}

TEST_F(UpdateControllerTest, ComparesWithTheVersionAtTheTimeOfTheReply)
{
    controller.CheckForUpdate(true);
    platform.bundle.version = "0.2";
    transfer().reply(kNewer);
    EXPECT_EQ(message(), kLatest);

    controller.CheckForUpdate(true);
    platform.bundle.version.reset();
    transfer().reply(kSame);
    EXPECT_EQ(message(), "Nothing new.") << "an absent version counts as 0";
}

TEST_F(UpdateControllerTest, ReleasesEveryOtherFinishedTransfer)
{
    controller.CheckForUpdate(true);
    transfer().reply(kSame);
    controller.CheckForUpdate(true);
    transfer().reply(kNewer);
    controller.CheckForUpdate(false);
    transfer().reply(kUnreadable);
    controller.CheckForUpdate(true);
    transfer().fail("no route");

    for (const auto& connection : desktop.connections.opened) {
        EXPECT_EQ(connection.use_count(), 1);
    }
}

TEST_F(UpdateControllerTest, ShowsWhyACheckFailedAndKeepsTheBusyLayout)
{
    controller.CheckForUpdate(true);

    clearCalls();
    transfer().fail("Host dunmora.invalid not found");

    EXPECT_EQ(calls(), (Calls{"hide btnDownload",
                              "UpdateWindow.labelMessage setStringValue Failed to check updates "
                              "due to:'Host dunmora.invalid not found'",
                              "UpdateWindow.progressIndicator stopAnimation"}));
    EXPECT_EQ(message(), "Failed to check updates due to:'Host dunmora.invalid not found'");
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(isInBusyLayout());
    EXPECT_FALSE(offersDownload());
}

TEST_F(UpdateControllerTest, DoesNotShowItsWindowForASilentCheckThatFailed)
{
    controller.CheckForUpdate(false);

    transfer().fail("no route");

    EXPECT_FALSE(isShown());
}

/// The end of a transfer, and what it does to a window that offers an update.
struct Ending {
    std::string name;
    std::function<void(FakeConnection& connection)> end;
    bool offersDownload;
    std::string message;
    std::string downloads;
};

class UpdateControllerEndingTest : public UpdateControllerTest,
                                   public testing::WithParamInterface<Ending> {};

TEST_P(UpdateControllerEndingTest, DecidesWhatRemainsOfAnEarlierOfferAfterASilentCheck)
{
    controller.CheckForUpdate(true);
    transfer().reply(kNewer);
    controller.CheckForUpdate(false);
    EXPECT_TRUE(offersDownload());

    GetParam().end(transfer());

    EXPECT_EQ(offersDownload(), GetParam().offersDownload);
    EXPECT_EQ(message(), GetParam().message);
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(isInResultLayout());
    interface().command("OnDownload").use();
    EXPECT_EQ(platform.workspace.openedPages, Calls{GetParam().downloads});
}

INSTANTIATE_TEST_SUITE_P(
    AllEndings, UpdateControllerEndingTest,
    testing::Values(
        Ending{"Newer", [](FakeConnection& connection) { connection.reply("0.3\nURL\nText"); },
               true, "Text", "URL"},
        Ending{"UpToDate", [](FakeConnection& connection) { connection.reply("0.1\nURL\nText"); },
               true, kLatest, "URL"},
        Ending{"Unreadable", [](FakeConnection& connection) { connection.reply(kUnreadable); },
               false, kLatest, ""},
        Ending{"Failed", [](FakeConnection& connection) { connection.fail("no route"); }, false,
               "Failed to check updates due to:'no route'", ""}),
    [](const auto& each) { return each.param.name; });

TEST_F(UpdateControllerTest, JoinsTheBodiesOfAllResponsesOfOneTransfer)
{
    controller.CheckForUpdate(true);

    transfer().respond();
    transfer().deliver("0.2\nURL");
    transfer().respond();
    transfer().deliver("\nText");
    transfer().finish();

    EXPECT_EQ(message(), "Text");
}

TEST_F(UpdateControllerTest, FollowsRedirectsUnchanged)
{
    controller.CheckForUpdate(false);

    EXPECT_EQ(transfer().redirect("https://elsewhere.example/x"), "https://elsewhere.example/x");
}

TEST_F(UpdateControllerTest, DoesNotCancelAnEarlierTransferButIgnoresIt)
{
    controller.CheckForUpdate(false);
    controller.CheckForUpdate(true);
    auto& early = *desktop.connections.opened[0];
    auto& late = *desktop.connections.opened[1];

    late.deliver("0.2\nURL\n");
    early.reply(kSame);
    late.deliver("Text");
    late.finish();

    EXPECT_FALSE(early.isCancelled);
    EXPECT_EQ(message(), "Text");
    EXPECT_TRUE(offersDownload());
}

TEST_F(UpdateControllerTest, IgnoresTheFailureOfAnEarlierTransfer)
{
    controller.CheckForUpdate(false);
    controller.CheckForUpdate(true);

    desktop.connections.opened[0]->fail("too late");

    EXPECT_EQ(message(), "");
    transfer().reply(kSame);
    EXPECT_EQ(message(), kLatest);
}

TEST_F(UpdateControllerTest, StaysBusyWhenNoConnectionCanBeOpened)
{
    desktop.connections.opensNone = true;

    controller.CheckForUpdate(true);

    EXPECT_TRUE(isShown());
    EXPECT_TRUE(isInBusyLayout());
    EXPECT_EQ(message(), "");
    EXPECT_EQ(calls().back(), "UpdateWindow.progressIndicator stopAnimation");
}

TEST_F(UpdateControllerTest, IgnoresAnEarlierTransferWhenNoConnectionCanBeOpened)
{
    for (const bool isAsked : {false, true}) {
        desktop.connections.opensNone = false;
        controller.CheckForUpdate(isAsked);
        transfer().deliver(kNewer);
        desktop.connections.opensNone = true;

        controller.CheckForUpdate(true);
        transfer().finish();
        transfer().fail("too late");

        EXPECT_TRUE(isInBusyLayout());
        EXPECT_FALSE(offersDownload());
        EXPECT_EQ(message(), "");
        EXPECT_FALSE(transfer().isCancelled);
    }
}

TEST_F(UpdateControllerTest, ReturnsToTheBusyLayoutForTheNextCheck)
{
    controller.CheckForUpdate(true);
    transfer().reply(kNewer);

    controller.CheckForUpdate(true);

    EXPECT_TRUE(isInBusyLayout());
    EXPECT_FALSE(offersDownload());
}

TEST_F(UpdateControllerTest, CancelsARequestedCheckWhenTheWindowCloses)
{
    controller.CheckForUpdate(true);

    interface().command("OnClose").use();

    EXPECT_FALSE(isShown());
    EXPECT_TRUE(transfer().isCancelled);
    EXPECT_EQ(desktop.connections.opened.back().use_count(), 1);
}

TEST_F(UpdateControllerTest, IgnoresACancelledTransfer)
{
    controller.CheckForUpdate(true);
    interface().fakeWindow.close();

    transfer().reply(kNewer);
    transfer().fail("too late");

    EXPECT_FALSE(isShown());
    EXPECT_EQ(message(), "");
}

TEST_F(UpdateControllerTest, CancelsNothingWhenTheWindowClosesAfterASilentOffer)
{
    controller.CheckForUpdate(false);
    transfer().reply(kNewer);

    interface().fakeWindow.close();

    EXPECT_FALSE(transfer().isCancelled);
}

TEST_F(UpdateControllerTest, DoesNotCancelASilentCheckThatHasOfferedNothing)
{
    controller.CheckForUpdate(false);

    interface().fakeWindow.close();

    EXPECT_FALSE(transfer().isCancelled);
    transfer().reply(kNewer);
    EXPECT_TRUE(isShown());
}

TEST_F(UpdateControllerTest, OpensTheDownloadAddressAndClosesTheWindow)
{
    controller.CheckForUpdate(true);
    transfer().reply(kNewer);
    clearCalls();

    interface().command("OnDownload").use();

    EXPECT_EQ(calls(), (Calls{"open http://example.com/get", "UpdateWindow close"}));
    EXPECT_FALSE(isShown());
}

TEST_F(UpdateControllerTest, ForgetsTheDownloadAddressWhenACheckBegins)
{
    controller.CheckForUpdate(true);
    transfer().reply(kNewer);

    controller.CheckForUpdate(true);
    interface().command("OnDownload").use();

    EXPECT_EQ(platform.workspace.openedPages, Calls{""});
}

TEST_F(UpdateControllerTest, StoresWhetherTheAutomaticCheckIsOn)
{
    auto& box = interface().checkBox("ckUpdate");

    box.shown = CheckState::Off;
    interface().command("OnUpdate").use(&box);
    EXPECT_TRUE(platform.userDefaults.hasValue(kAutomatic));
    EXPECT_FALSE(platform.userDefaults.boolForKey(kAutomatic));
    EXPECT_FALSE(platform.userDefaults.onDisk().at(kAutomatic)) << "the value is flushed at once";

    box.shown = CheckState::On;
    interface().command("OnUpdate").use(&box);
    EXPECT_TRUE(platform.userDefaults.boolForKey(kAutomatic));

    box.shown = CheckState::Mixed;
    interface().command("OnUpdate").use(&box);
    EXPECT_FALSE(platform.userDefaults.boolForKey(kAutomatic));
}

TEST_F(UpdateControllerTest, ChecksWhenItsInterfaceFileIsMissing)
{
    desktop.interfaceLoader.missing.insert("UpdateWindow");
    UpdateController withoutWindow;

    withoutWindow.CheckForUpdate(true);
    transfer().reply(kNewer);
    withoutWindow.OnDownload(nullptr);

    EXPECT_EQ(platform.workspace.openedPages, Calls{"http://example.com/get"});
}

TEST_F(UpdateControllerTest, TurnsTheAutomaticCheckOffAndOnWhenItsInterfaceFileIsMissing)
{
    desktop.interfaceLoader.missing.insert("UpdateWindow");
    UpdateController withoutWindow;

    for (const bool on : {false, true}) {
        withoutWindow.setAutomaticCheck(on);

        EXPECT_EQ(UpdateController::isAutomaticCheckOn(), on);
    }
}

}  // namespace dunmora::test
