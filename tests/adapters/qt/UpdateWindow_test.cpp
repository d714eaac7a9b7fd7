#include "tests/adapters/qt/QtTest.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QClipboard>
#include <QColor>
#include <QGuiApplication>
#include <QLabel>
#include <QPalette>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QStringList>
#include <QTextCursor>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {

namespace {

class UpdateWindowTest : public QtTest {
protected:
    QWidget& shown()
    {
        interface->window().show();
        handleEvents();
        return shownWindow(QStringLiteral("UpdateWindow"));
    }

    void showMessage(const std::string& text)
    {
        interface->textField("labelMessage").setStringValue(text);
        handleEventsUntil([&] { return message().toStdString() == text; });
    }

    /// Whether the whole widget is visible.
    static bool isSeen(const QWidget& widget)
    {
        return widget.isVisible() && widget.visibleRegion().boundingRect() == widget.rect();
    }

    std::unique_ptr<QtInterface> interface = load("UpdateWindow");
    QWidget& window = shown();
    QString message() const { return view.toPlainText(); }

    QPlainTextEdit& view = widgetIn<QPlainTextEdit>(window, "labelMessage");
};

TEST_F(UpdateWindowTest, ShowsTheMessageAndTheCloseButtonInEveryLayout)
{
    for (const bool isBusy : {true, false}) {
        interface->view("vwControls").setHidden(isBusy);
        interface->view("vwActivity").setHidden(!isBusy);
        showMessage("Failed to check updates due to:'Host update.dunmora.invalid not found'");

        for (const char* const name : {"labelMessage", "ckUpdate", "btnClose"}) {
            EXPECT_TRUE(isSeen(widgetIn<QWidget>(window, name))) << name;
        }
        EXPECT_EQ(isSeen(widgetIn<QWidget>(window, "progressIndicator")), isBusy);
        EXPECT_EQ(isSeen(widgetIn<QWidget>(window, "btnDownload")), !isBusy);
    }
}

TEST_F(UpdateWindowTest, ShowsTheMessageOfTheServiceAsPlainText)
{
    const std::string text = "<h1>Better</h1> &amp; http://example.com &Download";

    showMessage(text);

    EXPECT_FALSE(view.textInteractionFlags().testFlag(Qt::LinksAccessibleByMouse));
    EXPECT_FALSE(view.textInteractionFlags().testFlag(Qt::LinksAccessibleByKeyboard));
    EXPECT_TRUE(view.isReadOnly());
    EXPECT_EQ(view.toPlainText().toStdString(), text);
}

TEST_F(UpdateWindowTest, ShowsNothingThatMisleadsInTheMessage)
{
    // NOLINTNEXTLINE(misc-misleading-bidirectional): misleading on purpose.
    interface->textField("labelMessage").setStringValue("a\u202Eb\u2067c\x1B\u00AD\rd\u2028e\tf");
    handleEventsUntil([&] { return !message().isEmpty(); });

    EXPECT_EQ(message().toStdString(), "abc\uFFFD\nd\ne f");
}

TEST_F(UpdateWindowTest, DrawsTheMessageInTheColorOfLabels)
{
    const auto ordinary = QApplication::palette();
    for (const auto color : {Qt::red, Qt::blue}) {
        auto palette = ordinary;
        palette.setColor(QPalette::Text, Qt::green);
        palette.setColor(QPalette::WindowText, color);

        QApplication::setPalette(palette);
        handleEvents();

        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            EXPECT_EQ(view.palette().color(group, QPalette::Text), QColor(color));
        }
    }
    QApplication::setPalette(ordinary);
}

TEST_F(UpdateWindowTest, WrapsALongWord)
{
    showMessage(std::string(200, 'W'));

    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
    const auto end = view.cursorRect(QTextCursor(view.document()));
    QTextCursor last(view.document());
    last.movePosition(QTextCursor::End);
    EXPECT_GT(view.cursorRect(last).top(), end.bottom());
    EXPECT_LE(view.cursorRect(last).right(), view.viewport()->width());
}

TEST_F(UpdateWindowTest, LetsTheUserSelectTheMessageWithTheKeyboardAndTheMouse)
{
    showMessage("Better in every way.");
    view.setFocus();

    press(window, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(view.textCursor().selectedText(), QStringLiteral("Better "));
    QTest::keySequence(&view, QKeySequence::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Better "));

    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.cursorRect().center());
    EXPECT_EQ(view.textCursor().selectedText(), QStringLiteral("in"));
    press(window, Qt::Key_X);
    EXPECT_EQ(message(), QStringLiteral("Better in every way."));
}

TEST_F(UpdateWindowTest, LaysOutLittleOfALongMessage)
{
    for (const char* const repeated : {"x", "x\r", "\u2028", "\u0628", "\u0E01\u0E34", "x\u05D0"}) {
        std::string text = "a";
        while (text.size() < 1'000'000) {
            text += repeated;
        }

        interface->textField("labelMessage").setStringValue(text);
        handleEventsUntil([&] { return message().startsWith(QLatin1Char('a')); });

        EXPECT_LE(message().size(), 10001) << repeated;
        view.clear();
    }
}

TEST_F(UpdateWindowTest, DropsMarksThatNoCharacterNeeds)
{
    std::string marks;
    for (int i = 0; i < 30; ++i) {
        marks += "\u0301";
    }

    interface->textField("labelMessage").setStringValue("a" + marks + marks + "b" + marks);
    handleEventsUntil([&] { return !message().isEmpty(); });

    EXPECT_EQ(message().toStdString(), "a" + marks + "b" + marks);
}

TEST_F(UpdateWindowTest, DropsExcessMarksAmongInvisibleCharactersToo)
{
    const std::string end = "a\u0301\u200Cb";
    for (const std::string invisible : {"\u200C", "\u200D", "\u2060"}) {
        std::string text = "a";
        for (int i = 0; i < 40; ++i) {
            text += "\u0301" + invisible;
        }
        text += end;
        interface->textField("labelMessage").setStringValue(text);
        handleEventsUntil([&] { return message().endsWith(QLatin1Char('b')); });

        EXPECT_EQ(message().count(QChar(0x301)), 31) << "30, and that of the next letter";
        EXPECT_TRUE(message().toStdString().ends_with(end));
        view.clear();
    }
}

TEST_F(UpdateWindowTest, PresentsTheMessageToAScreenReaderAsALabelThatCanBeRead)
{
    showMessage("Better in every way.");
    auto* const accessible = QAccessible::queryAccessibleInterface(&view);

    EXPECT_EQ(accessible->role(), QAccessible::StaticText);
    EXPECT_EQ(accessible->text(QAccessible::Name), message());
    EXPECT_EQ(accessible->childCount(), 0);

    auto& text = *accessible->textInterface();
    EXPECT_EQ(text.text(7, 9), QStringLiteral("in"));
    EXPECT_EQ(text.characterCount(), message().size());
    text.setSelection(0, 10, 15);
    EXPECT_EQ(view.textCursor().selectedText(), QStringLiteral("every"));
    int start = 0;
    int end = 0;
    text.selection(0, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(10, 15));
    EXPECT_EQ(text.cursorPosition(), 15);
    text.removeSelection(0);
    EXPECT_EQ(text.selectionCount(), 0);
    EXPECT_EQ(text.offsetAtPoint(text.characterRect(3).center()), 3);
}

TEST_F(UpdateWindowTest, KeepsItsSizeWhateverTheMessage)
{
    const auto size = window.size();
    const auto screen = window.screen()->availableSize();

    for (const auto& text : {std::string(9000, 'W'), "word " + std::string(5000, ' '),
                             std::string(9000, '\n'), std::string("line\nline")}) {
        showMessage(text);
        EXPECT_EQ(window.size(), size);
        interface->window().close();
        interface->window().show();
        handleEvents();
        EXPECT_LE(window.width(), screen.width());
        EXPECT_LE(window.height(), screen.height());
    }
}

TEST_F(UpdateWindowTest, KeepsItsLayoutWhateverTheHostOfTheDownload)
{
    auto& host = widgetIn<QLabel>(window, "labelHost");
    const auto size = window.size();
    const auto place = host.geometry();
    EXPECT_GT(place.width(), size.width() * 9 / 10);
    EXPECT_GE(place.height(), host.fontMetrics().lineSpacing());

    for (const auto& text : {std::string("Download opens example.com"),
                             "Download opens " + std::string(253, 'm'), std::string()}) {
        interface->textField("labelHost").setStringValue(text);
        handleEventsUntil([&] { return host.text().toStdString() == text; });
        handleEvents();

        EXPECT_EQ(window.size(), size) << text;
        EXPECT_EQ(host.geometry(), place) << text;
    }
}

TEST_F(UpdateWindowTest, CutsOffAVeryLongMessage)
{
    interface->textField("labelMessage").setStringValue("Better. " + std::string(1 << 20, 'x'));
    handleEventsUntil([&] { return !message().isEmpty(); });

    EXPECT_TRUE(message().startsWith(QStringLiteral("Better. xxx")));
    EXPECT_TRUE(message().endsWith(QStringLiteral("…")));
    EXPECT_LE(message().size(), 10001);

    // A surrogate pair at the cut is not split.
    std::string text = "x";
    for (int i = 0; i < 2501; ++i) {
        text += "😀";
    }
    interface->textField("labelMessage").setStringValue(text);
    handleEventsUntil([&] { return message().startsWith(QStringLiteral("x")); });

    EXPECT_TRUE(message().endsWith(QStringLiteral("😀…")));
    EXPECT_TRUE(message().isValidUtf16());
}

TEST_F(UpdateWindowTest, ClearsTheMessageWhenItIsBusyAgain)
{
    showMessage("You are running the latest version.");

    interface->view("vwActivity").setHidden(false);
    EXPECT_EQ(message(), QString());

    showMessage("You are running the latest version.");
}

TEST_F(UpdateWindowTest, ShowsACursorOnlyInAText)
{
    view.setFocus();
    EXPECT_EQ(view.cursorWidth(), 0);

    showMessage("You are running the latest version.");
    EXPECT_GT(view.cursorWidth(), 0);

    interface->view("vwActivity").setHidden(false);
    EXPECT_EQ(view.cursorWidth(), 0);
}

TEST_F(UpdateWindowTest, ClosesByEnterAndEscapeAndDownloadsByItsMnemonic)
{
    std::vector<std::string> uses;
    for (const char* const name : {"OnClose", "OnDownload"}) {
        interface->command(name).setHandler([&uses, name](View*) { uses.emplace_back(name); });
    }

    press(window, Qt::Key_Return);
    press(window, Qt::Key_Escape);
    pressCloseControl(window);
    press(window, Qt::Key_D, Qt::AltModifier);

    // A mnemonic animates the click of its button.
    handleEventsUntil([&] { return uses.size() == 4; });
    EXPECT_EQ(uses, (std::vector<std::string>{"OnClose", "OnClose", "OnClose", "OnDownload"}));
}

TEST_F(UpdateWindowTest, TabsFromTheMessageToTheCloseButton)
{
    interface->command("OnDownload").setHandler([](View*) {});
    interface->command("OnUpdate").setHandler([](View*) {});
    interface->command("OnClose").setHandler([](View*) {});
    widgetIn<QWidget>(window, "labelMessage").setFocus();
    QStringList order;

    for (int i = 0; i < 4; ++i) {
        order.push_back(QApplication::focusWidget()->objectName());
        press(window, Qt::Key_Tab);
    }

    EXPECT_EQ(order, (QStringList{QStringLiteral("labelMessage"), QStringLiteral("ckUpdate"),
                                  QStringLiteral("btnDownload"), QStringLiteral("btnClose")}));
}

}  // namespace

}  // namespace dunmora::test
