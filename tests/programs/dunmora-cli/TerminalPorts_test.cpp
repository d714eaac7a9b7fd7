#include "programs/dunmora-cli/OverlayUserDefaults.h"
#include "programs/dunmora-cli/PrintingWorkspace.h"
#include "programs/dunmora-cli/TerminalAlert.h"
#include "tests/fakes/FakeUserDefaults.h"

#include <gtest/gtest.h>

#include <sstream>

namespace dunmora::test {
namespace {

TEST(TerminalAlert, PrintsANoticeWithoutWaiting)
{
    std::istringstream in("y\n");
    std::ostringstream err;
    TerminalAlert alert(in, err);

    EXPECT_EQ(alert.runModal({"No contact!", "", "OK", std::nullopt}), Alert::kDefaultButton);
    EXPECT_EQ(err.str(), "No contact!\n");
    EXPECT_EQ(in.tellg(), 0);
}

TEST(TerminalAlert, OffersBothButtonsAndReadsOneLine)
{
    std::istringstream in("no\nyes\n");
    std::ostringstream err;
    TerminalAlert alert(in, err);
    const AlertContent question{"Sure?", "It is \x1b late. \r\nGo on?", "Okay", "Cancel"};

    EXPECT_EQ(alert.runModal(question), Alert::kAlternateButton);
    EXPECT_EQ(err.str(), "Sure?\nIt is ␛ late. \nGo on?\nOkay/Cancel [y/N] ");
    EXPECT_EQ(alert.runModal(question), Alert::kDefaultButton);
}

TEST(TerminalAlert, EndsItsLineWhenTheInputEnds)
{
    std::istringstream in("");
    std::ostringstream err;
    TerminalAlert alert(in, err);

    EXPECT_EQ(alert.runModal({"Sure?", "", "Okay", "Cancel"}), Alert::kAlternateButton);
    EXPECT_TRUE(err.str().ends_with("[y/N] \n"));
}

TEST(OverlayUserDefaults, ReadsTheStoredValueUntilItIsOverridden)
{
    FakeUserDefaults below;
    below.setBool("filterHome", true);
    OverlayUserDefaults overlay(below);
    EXPECT_TRUE(overlay.hasValue("filterHome"));
    EXPECT_TRUE(overlay.boolForKey("filterHome"));
    EXPECT_FALSE(overlay.hasValue("filterWork"));

    overlay.setBool("filterHome", false);
    overlay.setBool("filterWork", false);
    overlay.setBool("filterWork", true);

    EXPECT_FALSE(overlay.boolForKey("filterHome"));
    EXPECT_TRUE(overlay.hasValue("filterWork"));
    EXPECT_TRUE(overlay.boolForKey("filterWork"));
}

TEST(OverlayUserDefaults, StoresNothing)
{
    FakeUserDefaults below;
    OverlayUserDefaults overlay(below);

    overlay.setBool("filterHome", true);

    EXPECT_TRUE(overlay.synchronize());
    EXPECT_FALSE(below.hasValue("filterHome"));
    EXPECT_TRUE(below.onDisk().empty());
}

TEST(PrintingWorkspace, PrintsTheAddress)
{
    std::ostringstream out;
    PrintingWorkspace workspace(out);

    EXPECT_TRUE(workspace.openURL("http://example.com/"));
    EXPECT_EQ(out.str(), "http://example.com/\n");

    out.setstate(std::ios::badbit);
    EXPECT_FALSE(workspace.openURL("http://example.com/"));
}

TEST(PrintingWorkspace, PrintsAnUntrustedAddressSafely)
{
    std::ostringstream out;
    PrintingWorkspace workspace(out);

    workspace.openWebPage("http://example.com/\x1b[2J");

    EXPECT_EQ(out.str(), "http://example.com/␛[2J\n");
}

TEST(PrintingWorkspace, PrintsAPathSafely)
{
    std::ostringstream out;
    PrintingWorkspace workspace(out);

    EXPECT_TRUE(workspace.openLocalPage("/doc/a\x1b.html"));
    EXPECT_EQ(out.str(), "/doc/a␛.html\n");

    out.setstate(std::ios::badbit);
    EXPECT_FALSE(workspace.openLocalPage("/doc/a.html"));
}

}  // namespace
}  // namespace dunmora::test
