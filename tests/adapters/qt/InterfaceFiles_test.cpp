#include "tests/adapters/qt/QtTest.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QToolButton>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace dunmora::test {

namespace {

using std::filesystem::path;

template <typename Kind>
bool is(const QWidget& widget)
{
    return qobject_cast<const Kind*>(&widget) != nullptr;
}

/// An outlet or a command that a source file asks an interface for.
struct Wish {
    std::string file;
    std::string interface;
    std::string kind;
    std::string name;
};

std::string textOf(const path& file)
{
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// The interface of a controller's source: the one that it loads, else the main one.
std::string interfaceOf(const std::string& source)
{
    static const std::regex kName("\"([A-Z][A-Za-z]*Window)\"");
    std::smatch found;
    return std::regex_search(source, found, kName) ? found[1].str() : "MainWindow";
}

/// All that the sources of the controllers ask for.
std::vector<Wish> wishes()
{
    static const std::regex kWish(
        R"re(\b(view|button|checkBox|textField|progressIndicator|tableView|command)\(\s*"(\w+)")re");
    std::vector<Wish> found;
    for (const char* const room : {"app", "ui", "update", "programs/dunmora"}) {
        const auto folder = path(DUNMORA_SOURCES) / room;
        if (!exists(folder)) {
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() != ".cpp") {
                continue;
            }
            const auto source = textOf(entry.path());
            for (std::sregex_iterator at(source.begin(), source.end(), kWish), end; at != end;
                 ++at) {
                found.push_back({entry.path().filename().string(), interfaceOf(source),
                                 (*at)[1].str(), (*at)[2].str()});
            }
        }
    }
    return found;
}

class InterfaceFilesTest : public QtTest, public testing::WithParamInterface<const char*> {
protected:
    /// The interface of the parameter, on the screen.
    QWidget& show()
    {
        interface_ = load(GetParam());
        interface_->window().show();
        return shownWindow(QString::fromLatin1(GetParam()));
    }

private:
    std::unique_ptr<QtInterface> interface_;
};

using ControllersTest = QtTest;

void ask(Interface& interface, const Wish& wish)
{
    const std::map<std::string, std::function<void()>> questions{
        {"view", [&] { interface.view(wish.name); }},
        {"button", [&] { interface.button(wish.name); }},
        {"checkBox", [&] { interface.checkBox(wish.name); }},
        {"textField", [&] { interface.textField(wish.name); }},
        {"progressIndicator", [&] { interface.progressIndicator(wish.name); }},
        {"tableView", [&] { interface.tableView(wish.name); }},
        {"command", [&] { interface.command(wish.name); }},
    };
    questions.at(wish.kind)();
}

TEST_F(ControllersTest, FindEveryOutletAndCommandInTheirInterface)
{
    std::map<std::string, std::unique_ptr<QtInterface>> interfaces;
    std::set<std::string> asked;
    for (const auto& wish : wishes()) {
        auto& interface = interfaces[wish.interface];
        if (!interface) {
            interface = load(wish.interface);
        }
        SCOPED_TRACE(wish.file + " asks " + wish.interface + " for the " + wish.kind + " " +
                     wish.name);

        EXPECT_NO_THROW(ask(*interface, wish));

        asked.insert(wish.name);
    }
    // What no controller could do without: the sources were read.
    for (const char* const name : {"tableContacts", "txtTotal", "progress", "txtInfo", "OnOkay"}) {
        EXPECT_TRUE(asked.contains(name)) << name;
    }
}

/// The letter that a text marks, in lower case; none where it marks none.
QString mnemonicOf(const QString& text)
{
    const auto sequence = QKeySequence::mnemonic(text);
    return sequence.isEmpty() ? QString() : sequence.toString().toLower();
}

void expectUnique(const QStringList& texts)
{
    QStringList mnemonics;
    for (const auto& text : texts) {
        const auto mnemonic = mnemonicOf(text);
        if (!mnemonic.isEmpty()) {
            EXPECT_FALSE(mnemonics.contains(mnemonic)) << text.toStdString();
            mnemonics.push_back(mnemonic);
        }
    }
}

TEST_P(InterfaceFilesTest, MarksEachLetterOnceInAWindowAndInAMenu)
{
    auto& window = show();

    QStringList texts;
    for (const auto* const button : window.findChildren<QAbstractButton*>()) {
        texts.push_back(button->text());
    }
    for (const auto* const label : window.findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) {
            texts.push_back(label->text());
        }
    }
    for (const auto* const bar : window.findChildren<QMenuBar*>()) {
        for (const auto* const action : bar->actions()) {
            texts.push_back(action->text());
        }
    }
    expectUnique(texts);

    for (const auto* const menu : window.findChildren<QMenu*>()) {
        QStringList entries;
        for (const auto* const action : menu->actions()) {
            EXPECT_TRUE(action->isSeparator() || !mnemonicOf(action->text()).isEmpty())
                << action->text().toStdString();
            entries.push_back(action->text());
        }
        expectUnique(entries);
    }
}

TEST_P(InterfaceFilesTest, GivesEveryControlAnAccessibleName)
{
    auto& window = show();

    for (auto* const widget : window.findChildren<QWidget*>()) {
        // A widget that gets its text from the program is named by it.
        const bool isNamedLater = !widget->isVisible() && is<QToolButton>(*widget);
        // A table speaks for its headers.
        const bool isPart = qobject_cast<QAbstractItemView*>(widget->parentWidget()) != nullptr;
        const bool isControl = (is<QAbstractButton>(*widget) || is<QLineEdit>(*widget) ||
                                is<QProgressBar>(*widget) || is<QAbstractItemView>(*widget)) &&
                               !widget->objectName().startsWith(QStringLiteral("qt_"));
        if (!isControl || isPart || isNamedLater) {
            continue;
        }
        auto* const accessible = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(accessible, nullptr);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
    }
}

TEST_P(InterfaceFilesTest, GivesEveryCommandAWayToReachItWithoutAMouse)
{
    auto& window = show();

    for (const auto* const button : window.findChildren<QAbstractButton*>()) {
        if (button->property("command").isValid()) {
            EXPECT_TRUE(button->focusPolicy() & Qt::TabFocus) << button->objectName().toStdString();
        }
    }
    QStringList inMenus;
    for (const auto* const menu : window.findChildren<QMenu*>()) {
        for (const auto* const action : menu->actions()) {
            inMenus.push_back(action->objectName());
        }
    }
    for (const auto* const action :
         window.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (action->objectName().startsWith(QStringLiteral("On"))) {
            EXPECT_TRUE(inMenus.contains(action->objectName()))
                << action->objectName().toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, InterfaceFilesTest,
                         testing::Values("FilterWindow", "MainWindow", "ProgressWindow"));

using MainWindowTest = QtTest;

TEST_F(MainWindowTest, GivesTheTableOrWhatStandsForItTheWholeRoom)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& table = widgetIn<QAbstractItemView>(window, "tableContacts");
    auto& empty = widgetIn<QWidget>(window, "vwEmpty");
    handleEvents();
    const auto room = empty.geometry();

    interface->view("vwEmpty").setHidden(true);
    interface->view("tableContacts").setHidden(false);
    handleEvents();

    EXPECT_EQ(table.geometry(), room);
}

using FilterWindowTest = QtTest;

TEST_F(FilterWindowTest, AnswersEnterWithOkAndEscapeWithCancel)
{
    const auto interface = load("FilterWindow");
    std::vector<std::string> uses;
    for (const char* const name : {"OnOkay", "OnCancel"}) {
        interface->command(name).setHandler([&uses, name](View*) { uses.emplace_back(name); });
    }
    interface->command("OnCheckBoxes").setHandler([](View*) {});
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("FilterWindow"));

    press(window, Qt::Key_Return);
    press(window, Qt::Key_Escape);
    widgetIn<QWidget>(window, "btnFilterHome").setFocus();
    press(window, Qt::Key_Return);

    EXPECT_EQ(uses, (std::vector<std::string>{"OnOkay", "OnCancel", "OnOkay"}));
}

}  // namespace

}  // namespace dunmora::test
