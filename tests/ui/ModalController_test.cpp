#include "ui/ModalController.h"

#include "tests/fakes/DesktopTest.h"

namespace dunmora::test {
namespace {

class Dialog final : public ModalController {
public:
    Dialog() : ModalController("Dialog") {}

private:
    void windowDidLoad(Interface& /*interface*/) override {}
};

class ModalControllerTest : public DesktopTest {
protected:
    Dialog dialog_;
};

TEST_F(ModalControllerTest, IsNotModalAtFirst)
{
    EXPECT_FALSE(dialog_.isModal());
    EXPECT_EQ(calls(), Calls());
}

TEST_F(ModalControllerTest, RunsItsWindowUntilTheSessionIsCancelled)
{
    const Window* shown = nullptr;
    bool wasModal = false;
    application_.onRunModal = [&](Window& window) {
        shown = &window;
        wasModal = dialog_.isModal();
        dialog_.CancelModal();
    };

    const int code = dialog_.DoModal();

    EXPECT_EQ(code, Application::kRunAborted);
    EXPECT_EQ(shown, dialog_.window());
    EXPECT_TRUE(wasModal);
    EXPECT_FALSE(dialog_.isModal());
    EXPECT_EQ(application_.abortedSessions, 1U);
}

TEST_F(ModalControllerTest, LeavesItToTheDialogToCloseTheWindow)
{
    application_.onRunModal = [&](Window& /*window*/) { dialog_.CancelModal(); };

    dialog_.DoModal();

    EXPECT_EQ(calls(), Calls{"load Dialog"});
}

TEST_F(ModalControllerTest, IsModalUntilItCancelsEvenWhenTheSessionEndedEarlier)
{
    application_.onRunModal = [&](Window& /*window*/) { application_.abortModal(); };

    dialog_.DoModal();

    EXPECT_TRUE(dialog_.isModal());
}

TEST_F(ModalControllerTest, EndsTheSessionOnceWhenItIsCancelledTwice)
{
    application_.onRunModal = [&](Window& /*window*/) {
        dialog_.CancelModal();
        dialog_.CancelModal();
    };

    dialog_.DoModal();

    EXPECT_EQ(application_.abortedSessions, 1U);
    EXPECT_EQ(application_.abortsWithoutSession, 0U);
    EXPECT_FALSE(dialog_.isModal());
}

TEST_F(ModalControllerTest, EndsOnlyItsOwnSession)
{
    Dialog other;
    application_.onRunModal = [&](Window& /*window*/) {
        other.CancelModal();
        EXPECT_EQ(application_.abortedSessions, 0U);
        dialog_.CancelModal();
    };

    dialog_.DoModal();

    EXPECT_EQ(application_.abortedSessions, 1U);
}

TEST_F(ModalControllerTest, ReturnsZeroWithoutASessionWhenItsInterfaceIsMissing)
{
    loader_.missing.insert("Dialog");
    bool ran = false;
    application_.onRunModal = [&](Window& /*window*/) { ran = true; };

    EXPECT_EQ(dialog_.DoModal(), 0);

    EXPECT_FALSE(ran);
    EXPECT_FALSE(dialog_.isModal());
}

}  // namespace
}  // namespace dunmora::test
