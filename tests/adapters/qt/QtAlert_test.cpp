#include "adapters/qt/QtAlert.h"
#include "tests/adapters/qt/QtTest.h"

#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>

#include <atomic>
#include <functional>
#include <optional>
#include <string>

namespace dunmora::test {

namespace {

class QtAlertTest : public QtTest {
protected:
    static QMessageBox* findBox()
    {
        for (auto* const window : QApplication::topLevelWidgets()) {
            if (auto* const box = qobject_cast<QMessageBox*>(window);
                box != nullptr && box->isVisible()) {
                return box;
            }
        }
        return nullptr;
    }

    static QMessageBox& shownBox()
    {
        auto* const box = findBox();
        if (box == nullptr) {
            throw std::runtime_error("no alert is shown");
        }
        return *box;
    }

    /// Shows the alert, does what the user does, and returns the answer.
    int answer(const AlertContent& content, const std::function<void(QMessageBox& box)>& user)
    {
        soon([&] { user(shownBox()); });
        return alert.runModal(content);
    }

    QtAlert alert{application};
    const AlertContent notice{"No contact checked to be deleted!", "", "OK", std::nullopt};
    const AlertContent question{
        "Confirm to delete",
        "The checked contacts will be deleted from Address Book. \r\nDo you really want to "
        "continue?",
        "Okay", "Cancel"};
};

TEST_F(QtAlertTest, AnswersWithTheButtonPressed)
{
    for (const auto& [text, expected] :
         {std::pair("Okay", Alert::kDefaultButton), std::pair("Cancel", Alert::kAlternateButton)}) {
        EXPECT_EQ(answer(question,
                         [text = text](QMessageBox& box) {
                             for (auto* const button : box.buttons()) {
                                 if (button->text() == QLatin1String(text)) {
                                     click(*button);
                                 }
                             }
                         }),
                  expected);
    }
}

TEST_F(QtAlertTest, AnswersEnterWithTheDefaultButton)
{
    const auto enter = [](QMessageBox& box) { press(box, Qt::Key_Return); };

    EXPECT_EQ(answer(question, enter), Alert::kDefaultButton);
    EXPECT_EQ(answer(notice, enter), Alert::kDefaultButton);
}

TEST_F(QtAlertTest, AnswersEscapeAndTheCloseControlWithTheAlternateButtonElseWithTheOnlyOne)
{
    const auto escape = [](QMessageBox& box) { press(box, Qt::Key_Escape); };
    const auto close = [](QMessageBox& box) { pressCloseControl(box); };

    EXPECT_EQ(answer(question, escape), Alert::kAlternateButton);
    EXPECT_EQ(answer(question, close), Alert::kAlternateButton);
    EXPECT_EQ(answer(notice, escape), Alert::kDefaultButton);
    EXPECT_EQ(answer(notice, close), Alert::kDefaultButton);
}

TEST_F(QtAlertTest, GivesTheDefaultButtonTheKeyboard)
{
    answer(question, [](QMessageBox& box) {
        EXPECT_EQ(box.focusWidget(), box.defaultButton());
        EXPECT_EQ(box.defaultButton()->text(), QStringLiteral("Okay"));
        press(box, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, ShowsPlainTextsWithTheirLines)
{
    const AlertContent content{"<b>a & b</b>", question.informativeText + " <i>1</i>", "A & B",
                               std::nullopt};

    answer(content, [](QMessageBox& box) {
        EXPECT_EQ(box.text(), QStringLiteral("<b>a & b</b>"));
        EXPECT_EQ(box.informativeText(),
                  QStringLiteral("The checked contacts will be deleted from Address Book. \n"
                                 "Do you really want to continue? <i>1</i>"));
        EXPECT_EQ(box.buttons().front()->text(), QStringLiteral("A && B"));
        for (const auto* const label : box.findChildren<QLabel*>()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
        press(box, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, LetsNoTextTurnRoundOrHideWhatFollows)
{
    const std::string name = "a\u202Efcv.\tb\x01\xFF";
    const AlertContent content{name, name + "\r\n\n" + name + "\n", "OK", std::nullopt};

    answer(content, [](QMessageBox& box) {
        const auto shown = QStringLiteral("afcv. b\uFFFD\uFFFD");
        EXPECT_EQ(box.text(), shown);
        EXPECT_EQ(box.informativeText(), shown + QStringLiteral("\n\n") + shown + u'\n');
        press(box, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, BreaksATextOnlyWhereItsLineIsLong)
{
    AlertContent content{"Notes", "No more than a line of the text that stands here.", "OK",
                         std::nullopt};
    const auto lines = [](const QMessageBox& box) {
        const auto& label = *box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
        return label.contentsRect().height() / label.fontMetrics().lineSpacing();
    };

    answer(content, [&](QMessageBox& box) {
        handleEvents();
        EXPECT_EQ(lines(box), 1);
        press(box, Qt::Key_Return);
    });
    content.informativeText += " And here as much again, which is too much for a line.";
    answer(content, [&](QMessageBox& box) {
        handleEvents();
        EXPECT_EQ(lines(box), 2);
        press(box, Qt::Key_Return);
    });
}

TEST_F(QtAlertTest, LetsALongTextBeScrolled)
{
    AlertContent content{"Notes", "", "OK", std::nullopt};
    for (int i = 0; i < 1000; ++i) {
        content.informativeText += "A card was skipped.\r\n";
    }

    answer(content, [](QMessageBox& box) {
        handleEvents();
        const auto& area = *box.findChild<QPlainTextEdit*>();
        EXPECT_TRUE(area.isReadOnly());
        EXPECT_EQ(area.blockCount(), 1001);
        EXPECT_GT(area.verticalScrollBar()->maximum(), 0);
        EXPECT_LE(box.height(), box.screen()->availableGeometry().height());
        EXPECT_TRUE(box.rect().contains(area.geometry()));
        EXPECT_FALSE(area.geometry().intersects(
            QRect(box.defaultButton()->mapTo(&box, QPoint()), box.defaultButton()->size())));
        press(box, Qt::Key_Return);
    });
}

TEST_F(QtAlertTest, CanBeAskedFromAnyThread)
{
    std::atomic<int> code = -1;
    // The alert's own event loop runs inside the test's.
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (auto* const box = findBox()) {
            user.stop();
            press(*box, Qt::Key_Return);
        }
    });
    user.start(1);

    application.detachNewThread("DeleteCheckedContacts", [&] { code = alert.runModal(notice); });
    handleEventsUntil([&] { return code != -1; });

    EXPECT_EQ(code, Alert::kDefaultButton);
}

TEST_F(QtAlertTest, CanStandAboveADialogAndLeavesItRunning)
{
    const auto filter = load("FilterWindow");
    bool wasRunning = false;
    filter->command("OnCancel").setHandler([&](View* /*sender*/) {
        wasRunning = true;
        application.abortModal();
    });

    soon([&] {
        answer(notice, [&](QMessageBox& box) {
            // The dialog waits, and so does its close control.
            pressCloseControl(shownWindow(QStringLiteral("FilterWindow")));
            EXPECT_FALSE(wasRunning);
            press(box, Qt::Key_Return);
        });
        press(shownWindow(QStringLiteral("FilterWindow")), Qt::Key_Escape);
    });
    application.runModalForWindow(filter->window());

    EXPECT_TRUE(wasRunning);
}

TEST_F(QtAlertTest, IsAnsweredAsByEscapeWhenItsSessionIsAborted)
{
    EXPECT_EQ(answer(question, [&](QMessageBox& /*box*/) { application.abortModal(); }),
              Alert::kAlternateButton);
}

}  // namespace

}  // namespace dunmora::test
