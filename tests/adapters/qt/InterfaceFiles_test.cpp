#include "platform/DetailsView.h"
#include "tests/adapters/qt/CountedRows.h"
#include "tests/adapters/qt/QtTest.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QScreen>
#include <QToolButton>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
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

/// A source file's request for an outlet or a command of an interface.
struct Request {
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

/// The interface that a controller's source loads, otherwise the main window's.
std::string interfaceOf(const std::string& source)
{
    static const std::regex kName("\"([A-Z][A-Za-z]*Window)\"");
    std::smatch found;
    return std::regex_search(source, found, kName) ? found[1].str() : "MainWindow";
}

/// Every request in the sources of the controllers.
std::vector<Request> requests()
{
    static const std::regex kRequest(
        R"re(\b(view|button|checkBox|textField|progressIndicator|tableView|detailsView|menu|command)\(\s*"(\w+)")re");
    std::vector<Request> found;
    for (const char* const module : {"app", "ui", "update", "programs/dunmora"}) {
        const auto folder = path(DUNMORA_SOURCES) / module;
        if (!exists(folder)) {
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() != ".cpp") {
                continue;
            }
            const auto source = textOf(entry.path());
            for (std::sregex_iterator at(source.begin(), source.end(), kRequest), end; at != end;
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
    /// Shows the interface named by the parameter.
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

void fulfil(Interface& interface, const Request& request)
{
    const std::map<std::string, std::function<void()>> outlets{
        {"view", [&] { interface.view(request.name); }},
        {"button", [&] { interface.button(request.name); }},
        {"checkBox", [&] { interface.checkBox(request.name); }},
        {"textField", [&] { interface.textField(request.name); }},
        {"progressIndicator", [&] { interface.progressIndicator(request.name); }},
        {"tableView", [&] { interface.tableView(request.name); }},
        {"detailsView", [&] { interface.detailsView(request.name); }},
        {"menu", [&] { interface.menu(request.name); }},
        {"command", [&] { interface.command(request.name); }},
    };
    outlets.at(request.kind)();
}

TEST_F(ControllersTest, FindEveryOutletAndCommandInTheirInterface)
{
    std::map<std::string, std::unique_ptr<QtInterface>> interfaces;
    std::set<std::string> requested;
    for (const auto& request : requests()) {
        auto& interface = interfaces[request.interface];
        if (!interface) {
            interface = load(request.interface);
        }
        SCOPED_TRACE(request.file + " requests from " + request.interface + " the " + request.kind +
                     " " + request.name);

        EXPECT_NO_THROW(fulfil(*interface, request));

        requested.insert(request.name);
    }
    // Outlets that must occur, which shows that the sources were read.
    for (const char* const name : {"tableContacts", "txtTotal", "progress", "txtInfo", "OnOkay"}) {
        EXPECT_TRUE(requested.contains(name)) << name;
    }
}

/// The mnemonic of a text in lower case, or an empty text.
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

TEST_P(InterfaceFilesTest, UsesEachMnemonicOnceInAWindowAndInAMenu)
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
        // Hidden buttons get their text, and thus their name, from the program.
        const bool isNamedLater = !widget->isVisible() && is<QToolButton>(*widget);
        // The headers belong to the table.
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

TEST_P(InterfaceFilesTest, LetsEveryCommandBeReachedByKeyboard)
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
                         testing::Values("FilterWindow", "MainWindow", "ProgressWindow",
                                         "ShortcutsWindow", "UpdateWindow"));

/// Keys with a meaning of their own in text fields, input methods, dialogs or desktops, on any
/// platform.
constexpr auto kTakenKeys =
    "Ctrl+A Ctrl+C Ctrl+D Ctrl+E Ctrl+H Ctrl+M Ctrl+N Ctrl+P Ctrl+S Ctrl+U Ctrl+V Ctrl+X Ctrl+Y "
    "Ctrl+Shift+A Ctrl+Shift+E Ctrl+Shift+F Ctrl+Shift+S Ctrl+Shift+U Space Shift+Space Ctrl+Space "
    "Del "
    "Shift+Del Ctrl+Backspace Ctrl+Left Ctrl+Right Ctrl+Home Ctrl+End Ctrl+Ins Shift+Ins Tab "
    "Ctrl+Tab F1 F10 Shift+F10 Alt+F4 Alt+Left Alt+Right Return Ctrl+Return Esc";

TEST_P(InterfaceFilesTest, UsesEachShortcutOnceAndNoneThatIsTaken)
{
    auto& window = show();

    const auto taken = QString::fromLatin1(kTakenKeys).split(QLatin1Char(' '));
    QStringList used;
    for (const auto* const action : window.findChildren<QAction*>()) {
        SCOPED_TRACE(action->objectName().toStdString());
        // On a Mac the standard key of help is Ctrl+?, which lists the shortcuts everywhere.
        const bool hasItsUsualMeaning = action->property("standardKey").isValid() ||
                                        action->objectName() == QStringLiteral("OnHelp");
        for (const auto& shortcut : action->shortcuts()) {
            const auto keys = shortcut.toString(QKeySequence::PortableText);
            EXPECT_FALSE(used.contains(keys)) << keys.toStdString();
            EXPECT_TRUE(hasItsUsualMeaning || !taken.contains(keys)) << keys.toStdString();
            // Desktops use this combination for themselves.
            EXPECT_FALSE(keys.startsWith(QStringLiteral("Ctrl+Alt+"))) << keys.toStdString();
            used.push_back(keys);
        }
    }
}

using MainWindowTest = QtTest;

TEST_F(MainWindowTest, GivesTheCommandsOfAReviewShortcuts)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));

    for (const char* const name : {"OnCheckSelected", "OnUncheckSelected", "OnKeepOneOfEach",
                                   "OnKeepOnly", "OnKeepAll", "OnDelete", "OnFilter"}) {
        EXPECT_FALSE(widgetIn<QAction>(window, name).shortcut().isEmpty()) << name;
    }
}

TEST_F(MainWindowTest, OpensTheGuideOnceHoweverLongTheKeyIsHeld)
{
    const auto interface = load("MainWindow");
    interface->window().show();

    EXPECT_FALSE(
        widgetIn<QAction>(shownWindow(QStringLiteral("MainWindow")), "OnHelp").autoRepeat());
}

TEST_F(MainWindowTest, ListsItsShortcutsInTheOrderOfTheMenusAndThenTheKeysOfItsParts)
{
    const auto interface = load("MainWindow");
    interface->command("OnDelete").setTitle("Delete 3 Checked…");
    interface->window().show();
    const auto& window = shownWindow(QStringLiteral("MainWindow"));

    const auto shortcuts = interface->shortcuts();

    std::vector<std::string> groups;
    std::map<std::string, std::string> keys;
    for (const auto& shortcut : shortcuts) {
        if (groups.empty() || groups.back() != shortcut.group) {
            groups.push_back(shortcut.group);
        }
        EXPECT_TRUE(keys.emplace(shortcut.group + " > " + shortcut.title, shortcut.keys).second);
        EXPECT_FALSE(shortcut.title.empty());
        EXPECT_FALSE(shortcut.keys.empty()) << shortcut.title;
    }
    EXPECT_EQ(groups,
              (std::vector<std::string>{"File", "Edit", "View", "Group", "Help", "In the window",
                                        "In the table", "In the filter", "In the details"}));
    EXPECT_EQ(keys["File > Delete Checked…"], "Ctrl+Del");
    EXPECT_EQ(keys["Help > Dunmora Help"], "F1");
    EXPECT_EQ(keys["Help > Keyboard Shortcuts"], "Ctrl+?");
    EXPECT_EQ(keys["In the table > Check or uncheck the selected rows"], "Space");
    EXPECT_EQ(keys["In the table > Go to the person whose name begins with them"], "Letters");
    EXPECT_EQ(keys["In the table > Go to the first or the last row"], "Home, End");
    // No shortcut is omitted.
    std::ptrdiff_t commands = 0;
    for (const auto* const action :
         window.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        commands += action->shortcuts().isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(commands, std::count_if(shortcuts.begin(), shortcuts.end(), [](const auto& shortcut) {
                  return !shortcut.group.starts_with("In the");
              }));
}

TEST_F(MainWindowTest, GivesTheTableThePlaceOfTheEmptyView)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& table = widgetIn<QAbstractItemView>(window, "tableContacts");
    auto& empty = widgetIn<QWidget>(window, "vwEmpty");
    handleEvents();
    const auto place = empty.geometry();

    interface->view("vwEmpty").setHidden(true);
    interface->view("vwReview").setHidden(false);
    interface->view("vwDetails").setHidden(true);
    interface->view("tableContacts").setHidden(false);
    handleEvents();

    EXPECT_EQ(QRect(table.mapTo(empty.parentWidget(), QPoint()), table.size()), place);
}

TEST_F(MainWindowTest, GivesTheTableMoreSpaceThanTheDetails)
{
    const auto interface = load("MainWindow");
    interface->view("vwEmpty").setHidden(true);
    interface->view("vwReview").setHidden(false);
    interface->view("tableContacts").setHidden(false);
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    handleEvents();

    const int table = widgetIn<QAbstractItemView>(window, "tableContacts").height();
    const int details = widgetIn<QWidget>(window, "vwDetails").height();
    EXPECT_GT(table, details);
    EXPECT_GT(2 * details, table);
}

TEST_F(MainWindowTest, CopiesFromTheWidgetWithTheFocus)
{
    const auto interface = load("MainWindow");
    CountedRows rows;
    rows.rows.resize(1);
    rows.rows[0].texts["fname"] = "Ann";
    auto& table = interface->tableView("tableContacts");
    table.setDataSource(&rows, &rows);
    table.reloadData();
    DetailsLine line;
    line.value = "ann@example.com";
    interface->detailsView("lstDetails").setLines({line});
    interface->view("vwEmpty").setHidden(true);
    interface->view("vwReview").setHidden(false);
    table.setHidden(false);
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& copy = widgetIn<QAction>(window, "OnCopy");
    const auto copied = [] { return QGuiApplication::clipboard()->text(); };

    table.selectRow(0);
    copy.trigger();
    EXPECT_TRUE(copied().startsWith(QStringLiteral("Ann\t"))) << copied().toStdString();
    QGuiApplication::clipboard()->clear();
    press(window, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(copied().startsWith(QStringLiteral("Ann\t"))) << copied().toStdString();

    widgetIn<QAbstractItemView>(window, "lstDetails").setFocus();
    copy.trigger();
    EXPECT_EQ(copied(), QStringLiteral("ann@example.com"));

    table.beginFiltering();
    auto& filter = widgetIn<QLineEdit>(window, "tableContactsFilter");
    filter.setText(QStringLiteral("lee"));
    filter.selectAll();
    copy.trigger();
    EXPECT_EQ(copied(), QStringLiteral("lee"));

    interface->command("OnNotes").setHandler([](View*) {});
    widgetIn<QWidget>(window, "btnNotes").setVisible(true);
    widgetIn<QWidget>(window, "btnNotes").setFocus();
    copy.trigger();
    EXPECT_EQ(copied(), QStringLiteral("lee")) << "a button has nothing to copy";
    table.setDataSource(nullptr, nullptr);
}

using ShortcutsWindowTest = QtTest;

TEST_F(ShortcutsWindowTest, KeepsItsInitialSizeAboveTheMainWindow)
{
    const auto main = load("MainWindow");
    main->window().show();
    const auto interface = load("ShortcutsWindow");

    interface->window().show();

    const auto& window = shownWindow(QStringLiteral("ShortcutsWindow"));
    EXPECT_EQ(window.height(),
              window.property("initialLines").toInt() * window.fontMetrics().lineSpacing());
}

TEST_F(MainWindowTest, LeavesSpaceForItsFrameOnASmallScreen)
{
    const auto font = QApplication::font();
    auto large = font;
    large.setPointSizeF(3 * font.pointSizeF());
    QApplication::setFont(large);

    const auto interface = load("MainWindow");
    interface->window().show();

    const auto& window = shownWindow(QStringLiteral("MainWindow"));
    const auto screen = window.screen()->availableSize();
    EXPECT_LT(window.width(), screen.width());
    EXPECT_LT(window.height(), screen.height());
    QApplication::setFont(font);
}

using FilterWindowTest = QtTest;

TEST_F(FilterWindowTest, TreatsEnterAsOkAndEscapeAsCancel)
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
