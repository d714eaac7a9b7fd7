#include "adapters/qt/QtAlert.h"

#include "adapters/qt/AlertDialog.h"
#include "adapters/qt/Symbols.h"
#include "tests/adapters/qt/QtTest.h"

#include <QAccessible>
#include <QDialogButtonBox>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace dunmora::test {

namespace {

class QtAlertTest : public QtTest {
protected:
    static AlertDialog* findDialog()
    {
        for (auto* const window : QApplication::topLevelWidgets()) {
            if (auto* const dialog = qobject_cast<AlertDialog*>(window);
                dialog != nullptr && dialog->isVisible()) {
                return dialog;
            }
        }
        return nullptr;
    }

    static AlertDialog& shownDialog()
    {
        auto* const dialog = findDialog();
        if (dialog == nullptr) {
            throw std::runtime_error("no alert is shown");
        }
        return *dialog;
    }

    /// The buttons in the order in which they were added.
    static QList<QAbstractButton*> buttonsOf(const AlertDialog& dialog)
    {
        return dialog.findChild<QDialogButtonBox*>()->buttons();
    }

    static QPushButton& defaultButton(const AlertDialog& dialog)
    {
        for (auto* const button : dialog.findChildren<QPushButton*>()) {
            if (button->isDefault()) {
                return *button;
            }
        }
        throw std::runtime_error("no button is the default one");
    }

    static QString textOf(AlertDialog& dialog, const char* name)
    {
        return widgetIn<QLabel>(dialog, name).text();
    }

    /// What a screen reader calls the alert's sign.
    static QString nameOfSign(AlertDialog& dialog)
    {
        return widgetIn<QLabel>(dialog, "sign").accessibleName();
    }

    /// Whether the alert's sign is our own one with this name.
    static bool hasSign(AlertDialog& dialog, const char* name)
    {
        const auto sign = widgetIn<QLabel>(dialog, "sign").pixmap();
        const auto expected = symbolIcon(QLatin1String(name)).pixmap(sign.size());
        return sign.toImage() == expected.toImage();
    }

    /// Shows the alert, acts as the user, and returns the response.
    int answer(const AlertContent& content, const std::function<void(AlertDialog& dialog)>& user)
    {
        soon([&] { user(shownDialog()); });
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

TEST_F(QtAlertTest, ReturnsTheButtonPressed)
{
    for (const auto& [text, expected] :
         {std::pair("Okay", Alert::kDefaultButton), std::pair("Cancel", Alert::kAlternateButton)}) {
        EXPECT_EQ(answer(question,
                         [text = text](AlertDialog& dialog) {
                             for (auto* const button : buttonsOf(dialog)) {
                                 if (button->text() == QLatin1String(text)) {
                                     click(*button);
                                 }
                             }
                         }),
                  expected);
    }
}

TEST_F(QtAlertTest, CanOfferAThirdButton)
{
    auto content = question;
    content.otherButton = "Delete Them Too";

    EXPECT_EQ(answer(content,
                     [](AlertDialog& dialog) {
                         ASSERT_EQ(buttonsOf(dialog).size(), 3);
                         EXPECT_EQ(defaultButton(dialog).text(), QStringLiteral("Okay"));
                         for (auto* const button : buttonsOf(dialog)) {
                             if (button->text() == QLatin1String("Delete Them Too")) {
                                 click(*button);
                             }
                         }
                     }),
              Alert::kOtherButton);
    EXPECT_EQ(answer(content, [](AlertDialog& dialog) { press(dialog, Qt::Key_Return); }),
              Alert::kDefaultButton);
    EXPECT_EQ(answer(content, [](AlertDialog& dialog) { press(dialog, Qt::Key_Escape); }),
              Alert::kAlternateButton);
}

TEST_F(QtAlertTest, HasASignForNoticesQuestionsAndFailures)
{
    // A theme without icons.
    const auto theme = QIcon::themeName();
    QIcon::setThemeName(QStringLiteral("none"));
    auto failure = notice;
    failure.style = AlertStyle::Failure;
    const auto expect = [this](const AlertContent& content, const char* sign, const char* name) {
        answer(content, [&](AlertDialog& dialog) {
            EXPECT_TRUE(hasSign(dialog, sign));
            EXPECT_EQ(nameOfSign(dialog), QLatin1String(name));
            press(dialog, Qt::Key_Escape);
        });
    };

    expect(notice, "information", "Information");
    expect(question, "doubt", "Question");
    expect(failure, "loss", "Error");
    QIcon::setThemeName(theme);
}

TEST_F(QtAlertTest, TreatsEnterAsTheDefaultButton)
{
    const auto enter = [](AlertDialog& dialog) { press(dialog, Qt::Key_Return); };

    EXPECT_EQ(answer(question, enter), Alert::kDefaultButton);
    EXPECT_EQ(answer(notice, enter), Alert::kDefaultButton);
}

TEST_F(QtAlertTest, TreatsEscapeAndTheCloseControlAsTheAlternateButtonOrTheOnlyOne)
{
    const auto escape = [](AlertDialog& dialog) { press(dialog, Qt::Key_Escape); };
    const auto close = [](AlertDialog& dialog) { pressCloseControl(dialog); };

    EXPECT_EQ(answer(question, escape), Alert::kAlternateButton);
    EXPECT_EQ(answer(question, close), Alert::kAlternateButton);
    EXPECT_EQ(answer(notice, escape), Alert::kDefaultButton);
    EXPECT_EQ(answer(notice, close), Alert::kDefaultButton);
}

TEST_F(QtAlertTest, FocusesTheDefaultButton)
{
    answer(question, [](AlertDialog& dialog) {
        EXPECT_EQ(dialog.focusWidget(), &defaultButton(dialog));
        EXPECT_EQ(defaultButton(dialog).text(), QStringLiteral("Okay"));
        press(dialog, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, ShowsPlainTextsWithTheirLines)
{
    const AlertContent content{"<b>a & b</b>", question.informativeText + " <i>1</i>", "A & B",
                               std::nullopt};

    answer(content, [](AlertDialog& dialog) {
        EXPECT_EQ(textOf(dialog, "message"), QStringLiteral("<b>a & b</b>"));
        EXPECT_EQ(textOf(dialog, "details"),
                  QStringLiteral("The checked contacts will be deleted from Address Book. \n"
                                 "Do you really want to continue? <i>1</i>"));
        EXPECT_EQ(buttonsOf(dialog).front()->text(), QStringLiteral("A && B"));
        for (const auto* const name : {"message", "details"}) {
            EXPECT_EQ(widgetIn<QLabel>(dialog, name).textFormat(), Qt::PlainText);
        }
        press(dialog, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, LetsNoTextReverseOrHideWhatFollows)
{
    const std::string name = "a\u202Efcv.\tb\x01\xFF";
    const AlertContent content{name, name + "\r\n\n" + name + "\n", "OK", std::nullopt};

    answer(content, [](AlertDialog& dialog) {
        const auto shown = QStringLiteral("afcv. b\uFFFD\uFFFD");
        EXPECT_EQ(textOf(dialog, "message"), shown);
        EXPECT_EQ(textOf(dialog, "details"), shown + QStringLiteral("\n\n") + shown + u'\n');
        press(dialog, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, WrapsATextOnlyWhereItsLineIsLong)
{
    AlertContent content{"Notes", "This text is no longer than a single line of it.", "OK",
                         std::nullopt};
    const auto lines = [](AlertDialog& dialog) {
        const auto& label = widgetIn<QLabel>(dialog, "details");
        return label.contentsRect().height() / label.fontMetrics().lineSpacing();
    };

    answer(content, [&](AlertDialog& dialog) {
        handleEvents();
        EXPECT_EQ(lines(dialog), 1);
        press(dialog, Qt::Key_Return);
    });
    content.informativeText += " Here is as much again, which is too much for a line.";
    answer(content, [&](AlertDialog& dialog) {
        handleEvents();
        EXPECT_EQ(lines(dialog), 2);
        press(dialog, Qt::Key_Return);
    });
}

TEST_F(QtAlertTest, LetsALongTextBeScrolled)
{
    AlertContent content{"Notes", "", "OK", std::nullopt};
    for (int i = 0; i < 1000; ++i) {
        content.informativeText += "A card was skipped.\r\n";
    }

    answer(content, [](AlertDialog& dialog) {
        handleEvents();
        const auto& area = *dialog.findChild<QPlainTextEdit*>();
        EXPECT_TRUE(area.isReadOnly());
        EXPECT_EQ(area.blockCount(), 1001);
        EXPECT_GT(area.verticalScrollBar()->maximum(), 0);
        EXPECT_LE(dialog.height(), dialog.screen()->availableGeometry().height());
        EXPECT_TRUE(dialog.rect().contains(area.geometry()));
        EXPECT_FALSE(area.geometry().intersects(
            QRect(defaultButton(dialog).mapTo(&dialog, QPoint()), defaultButton(dialog).size())));
        press(dialog, Qt::Key_Return);
    });
}

TEST_F(QtAlertTest, LetsALongMessageBeScrolledToo)
{
    const AlertContent content{std::string(5000, 'x'), "", "OK", std::nullopt};

    answer(content, [](AlertDialog& dialog) {
        handleEvents();
        const auto& area = widgetIn<QPlainTextEdit>(dialog, "message");
        EXPECT_EQ(area.toPlainText().size(), 5000);
        EXPECT_TRUE(dialog.screen()->availableGeometry().contains(dialog.geometry()));
        press(dialog, Qt::Key_Return);
    });
}

TEST_F(QtAlertTest, ShowsEachLineOfAMessageAboveWiderDetails)
{
    const std::string details(2000, 'x');
    const std::string button(100, 'x');
    std::string message;
    while (message.size() < 200) {
        message += "41 people would be deleted ";
    }

    answer({message, details, button, "Cancel"}, [&](AlertDialog& dialog) {
        handleEvents();
        const auto& label = widgetIn<QLabel>(dialog, "message");
        EXPECT_GT(widgetIn<QWidget>(dialog, "details").width(), label.width());
        EXPECT_GE(label.height(), label.heightForWidth(label.width()));
        dialog.accept();
    });
}

TEST_F(QtAlertTest, IsWideEnoughForALongWord)
{
    const AlertContent content{"Notes", std::string(30, 'W'), "OK", std::nullopt};

    answer(content, [](AlertDialog& dialog) {
        handleEvents();
        const auto& label = widgetIn<QLabel>(dialog, "details");
        EXPECT_GE(label.contentsRect().width(),
                  label.fontMetrics().horizontalAdvance(label.text()));
        press(dialog, Qt::Key_Return);
    });
}

TEST_F(QtAlertTest, BreaksAWordThatIsTooWideForTheScreen)
{
    const AlertContent content{"Notes", std::string(200, 'W'), "OK", std::nullopt};

    answer(content, [](AlertDialog& dialog) {
        handleEvents();
        auto& area = widgetIn<QPlainTextEdit>(dialog, "details");
        EXPECT_LE(area.width(), dialog.screen()->size().width() / 2);
        EXPECT_FALSE(area.horizontalScrollBar()->isVisible());
        EXPECT_GT(area.document()->size().height(), 1) << "lines";
        press(dialog, Qt::Key_Return);
    });
}

TEST_F(QtAlertTest, LetsTheUserSelectItsTexts)
{
    answer(question, [](AlertDialog& dialog) {
        for (const auto* const name : {"message", "details"}) {
            EXPECT_TRUE(widgetIn<QLabel>(dialog, name)
                            .textInteractionFlags()
                            .testFlag(Qt::TextSelectableByMouse));
        }
        press(dialog, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, IsAnAlertToScreenReaders)
{
    answer(question, [](AlertDialog& dialog) {
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&dialog)->role(),
                  QAccessible::AlertMessage);
        press(dialog, Qt::Key_Escape);
    });
}

TEST_F(QtAlertTest, CanRunFromAnyThread)
{
    std::atomic<int> code = -1;
    // A timer, because the alert runs a nested event loop.
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (auto* const dialog = findDialog()) {
            user.stop();
            press(*dialog, Qt::Key_Return);
        }
    });
    user.start(1);

    application.detachNewThread("DeleteCheckedContacts", [&] { code = alert.runModal(notice); });
    handleEventsUntil([&] { return code != -1; });

    EXPECT_EQ(code, Alert::kDefaultButton);
}

TEST_F(QtAlertTest, CanOpenAboveADialogAndLeavesItRunning)
{
    const auto filter = load("FilterWindow");
    bool wasRunning = false;
    filter->command("OnCancel").setHandler([&](View* /*sender*/) {
        wasRunning = true;
        application.abortModal();
    });

    soon([&] {
        answer(notice, [&](AlertDialog& dialog) {
            // The dialog is blocked, including its close control.
            pressCloseControl(shownWindow(QStringLiteral("FilterWindow")));
            EXPECT_FALSE(wasRunning);
            press(dialog, Qt::Key_Return);
        });
        press(shownWindow(QStringLiteral("FilterWindow")), Qt::Key_Escape);
    });
    application.runModalForWindow(filter->window());

    EXPECT_TRUE(wasRunning);
}

TEST_F(QtAlertTest, ReturnsTheAlternateButtonWhenItsSessionIsAborted)
{
    EXPECT_EQ(answer(question, [&](AlertDialog& /*dialog*/) { application.abortModal(); }),
              Alert::kAlternateButton);
}

}  // namespace

}  // namespace dunmora::test
