#include "adapters/qt/ScreenFit.h"

#include "adapters/qt/AlertDialog.h"
#include "adapters/qt/WindowPlacement.h"
#include "platform/TableView.h"
#include "tests/adapters/qt/QtTest.h"

#include <QCheckBox>
#include <QFont>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QPushButton>
#include <QScreen>

#include <string>

namespace dunmora::test {

namespace {

/// Letters so large that no window fits on the screen by itself.
class ScreenFitTest : public QtTest {
protected:
    void SetUp() override { setLetters(5); }

    void TearDown() override
    {
        setLetters(1);
        QtTest::TearDown();
    }

    void setLetters(double factor) const
    {
        auto font = ordinary_;
        font.setPointSizeF(factor * ordinary_.pointSizeF());
        QApplication::setFont(font);
    }

    static void expectFits(const QWidget& window)
    {
        handleEvents();
        const auto space = spaceWithinFrame(window);
        EXPECT_LE(window.width(), space.width());
        EXPECT_LE(window.height(), space.height());
        EXPECT_LE(window.minimumSize().width(), space.width());
        EXPECT_LE(window.minimumSize().height(), space.height());
    }

private:
    const QFont ordinary_ = QApplication::font();
};

TEST_F(ScreenFitTest, KeepsTheMainWindowOnTheScreenWithEverythingShown)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));

    interface->view("vwEmpty").setHidden(true);
    interface->view("vwReview").setHidden(false);
    interface->view("vwDeletion").setHidden(false);
    for (const char* const name : {"txtTotal", "txtChecked", "txtResult", "txtDeletion"}) {
        interface->textField(name).setStringValue("1000000 people of 2000000 people");
        interface->textField(name).setHidden(false);
    }
    for (const char* const name :
         {"btnLastCopies", "btnAllRows", "btnEmptyFields", "btnOnlyHere", "btnNotes"}) {
        interface->button(name).setTitle("1000000 people would lose every copy");
        interface->button(name).setHidden(false);
    }
    interface->tableView("tableContacts").setHidden(false);
    interface->tableView("tableContacts").beginFiltering();

    expectFits(window);
}

TEST_F(ScreenFitTest, LetsTheUserReachEveryControlOfADialogThatIsTooLarge)
{
    const auto interface = load("FilterWindow");
    for (const char* const name : {"OnOkay", "OnCancel", "OnCheckBoxes"}) {
        interface->command(name).setHandler([](View*) {});
    }
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("FilterWindow"));

    expectFits(window);
    for (const char* const name : {"btnFilterMobile", "btnFilterFirstname"}) {
        auto& box = widgetIn<QCheckBox>(window, name);
        while (!box.hasFocus()) {
            press(window, Qt::Key_Tab);
        }
        EXPECT_FALSE(box.visibleRegion().isEmpty()) << name;
    }
}

TEST_F(ScreenFitTest, KeepsTheOtherWindowsOnTheScreen)
{
    for (const char* const name : {"ProgressWindow", "UpdateWindow"}) {
        const auto interface = load(name);
        interface->window().show();

        expectFits(shownWindow(QString::fromLatin1(name)));
    }
}

TEST_F(ScreenFitTest, KeepsAnAlertWithLongTextsOnTheScreen)
{
    for (const double factor : {1.0, 2.0, 5.0}) {
        setLetters(factor);
        const std::string sentence(40, 'x');
        std::string text;
        for (int i = 0; i < 17; ++i) {
            text += sentence + " ";
        }
        AlertDialog alert({text, text + text, "Leave Them Out", "Cancel", "Delete Them Too"},
                          nullptr);
        showAboveMainWindow(alert);

        expectFits(alert);
        auto& button = *alert.findChild<QPushButton*>();
        EXPECT_EQ(alert.focusWidget(), &button) << factor;
        EXPECT_FALSE(button.visibleRegion().isEmpty()) << factor;
    }
}

TEST_F(ScreenFitTest, LetsAHighMenuScroll)
{
    // More entries than fit below each other, but none too wide.
    setLetters(3.6);
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& menu = widgetIn<QMenu>(window, "menuEdit");

    menu.popup(QPoint());
    handleEvents();

    const auto screen = window.screen()->availableSize();
    EXPECT_GT(menu.sizeHint().height(), screen.height());
    EXPECT_LE(menu.width(), screen.width());
    EXPECT_LE(menu.height(), screen.height());
    menu.close();
}

TEST_F(ScreenFitTest, LeavesADialogThatFitsAlone)
{
    setLetters(1);
    const auto interface = load("FilterWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("FilterWindow"));
    handleEvents();

    EXPECT_EQ(window.size(), window.layout()->totalSizeHint());
    EXPECT_NE(window.findChild<QLabel*>(QStringLiteral("txtCondition"), Qt::FindDirectChildrenOnly),
              nullptr);
}

}  // namespace

}  // namespace dunmora::test
