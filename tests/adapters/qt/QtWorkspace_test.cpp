#include "tests/adapters/qt/QtWorkspace_test.h"

#include "adapters/qt/QtWorkspace.h"
#include "tests/adapters/qt/QtTest.h"

#include <QDesktopServices>
#include <QUrl>

#include <atomic>
#include <string>
#include <vector>

namespace dunmora::test {

namespace {

class QtWorkspaceTest : public QtTest {
protected:
    Programs programs;
    QtWorkspace workspace{application};
};

TEST_F(QtWorkspaceTest, OpensWebPagesAndNewMessages)
{
    const std::vector<std::string> urls{
        "http://dunmora.example.com/", "https://dunmora.example.com/a?b=c%20d#e",
        "mailto:support@dunmora.example.com", "mailto:a@b?subject=attach=x&body=attach"};

    for (const auto& url : urls) {
        EXPECT_TRUE(workspace.openURL(url)) << url;
    }

    EXPECT_EQ(programs.opened, urls);
}

TEST_F(QtWorkspaceTest, OpensNothingElse)
{
    for (const std::string url :
         {"", "dunmora.example.com", "file:///etc/passwd", "/etc/passwd", "ftp://example.com/",
          "javascript:alert(1)", "tel:123", "http://", "http:///path", "https://a b/",
          "http://example.com/%zz", "mailto:", "http://[::1", "smb://example.com/",
          // The URL from a reply whose lines end with CR LF.
          "http://example.com/get\r"}) {
        EXPECT_FALSE(workspace.openURL(url)) << url;
    }

    EXPECT_EQ(programs.opened, std::vector<std::string>());
}

TEST_F(QtWorkspaceTest, OpensNoMessageWithAttachments)
{
    for (const std::string url :
         {"mailto:a@b?attach=/etc/passwd", "mailto:a@b?subject=x&attachment=/etc/passwd",
          "mailto:a@b?ATTACH=/etc/passwd", "mailto:a@b?%61ttach=/etc/passwd",
          "mailto:a@b?Attach%4dent=/etc/passwd", "mailto:a@b?subject=x&amp;attach=/etc/passwd",
          "mailto:a@b?%20attach=/etc/passwd", "mailto:a@b?attach"}) {
        EXPECT_FALSE(workspace.openURL(url)) << url;
    }

    EXPECT_EQ(programs.opened, std::vector<std::string>());
}

TEST_F(QtWorkspaceTest, OpensUrlsFromAnyThread)
{
    std::atomic<bool> hasEnded = false;

    application.detachNewThread("LoadContacts", [&] {
        workspace.openURL("http://dunmora.example.com/");
        hasEnded = true;
    });
    handleEventsUntil([&] { return hasEnded.load(); });

    EXPECT_EQ(programs.opened.size(), 1U);
}

}  // namespace

}  // namespace dunmora::test
