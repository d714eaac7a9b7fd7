#include "platform/Menu.h"
#include "tests/adapters/qt/QtTest.h"
#include "tests/fakes/TemporaryFolder.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <QToolTip>

#include <atomic>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace dunmora::test {

namespace {

class QtInterfaceTest : public QtTest {
protected:
    /// Sets a handler that counts its calls.
    static void count(QtInterface& interface, std::string_view command, int& uses)
    {
        interface.command(command).setHandler([&uses](View* /*sender*/) { ++uses; });
    }
};

class CountingDelegate final : public WindowDelegate {
public:
    void windowWillClose() override { ++closes; }

    int closes = 0;
};

TEST_F(QtInterfaceTest, IsNullWithoutAFile)
{
    EXPECT_EQ(loader.load("NoWindow"), nullptr);
}

TEST_F(QtInterfaceTest, IsNullForAnInvalidFile)
{
    const TemporaryFolder folder;
    write(folder.path() / "Broken.ui", R"(<ui version="4.0"><widget class="QDialog")");
    QtInterfaceLoader other(application.sessions(), folder.path().string());

    EXPECT_EQ(other.load("Broken"), nullptr);
}

TEST_F(QtInterfaceTest, ShowsTheCheckMarkThatTheProgramSets)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& action = widgetIn<QAction>(shownWindow(QStringLiteral("MainWindow")), "OnFilter");
    action.setCheckable(true);
    int uses = 0;
    count(*interface, "OnFilter", uses);

    action.trigger();
    EXPECT_EQ(uses, 1);
    EXPECT_FALSE(action.isChecked());

    interface->command("OnFilter").setChecked(true);
    EXPECT_TRUE(action.isChecked());
}

TEST_F(QtInterfaceTest, HidesAMenuEntryWithItsCommand)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& action = widgetIn<QAction>(window, "OnFilter");
    int uses = 0;
    count(*interface, "OnFilter", uses);

    interface->command("OnFilter").setHidden(true);

    EXPECT_FALSE(action.isVisible());
    action.trigger();
    press(window, Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(uses, 0);

    interface->command("OnFilter").setHidden(false);

    EXPECT_TRUE(action.isVisible());
    action.trigger();
    EXPECT_EQ(uses, 1);
}

TEST_F(QtInterfaceTest, HidesAButtonWithItsCommand)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& button =
        widgetIn<QAbstractButton>(shownWindow(QStringLiteral("MainWindow")), "btnEmptyOpen");
    int uses = 0;
    count(*interface, "OnOpen", uses);

    interface->command("OnOpen").setHidden(true);

    EXPECT_TRUE(button.isHidden());
    button.click();
    EXPECT_EQ(uses, 0);
}

TEST_F(QtInterfaceTest, RejectsUnknownNames)
{
    const auto interface = load("FilterWindow");

    EXPECT_THROW(interface->view("txtNothing"), std::logic_error);
    EXPECT_THROW(interface->button("txtCondition"), std::logic_error);
    EXPECT_THROW(interface->checkBox("txtCondition"), std::logic_error);
    EXPECT_THROW(interface->textField("btnFilterHome"), std::logic_error);
    EXPECT_THROW(interface->progressIndicator("btnFilterHome"), std::logic_error);
    EXPECT_THROW(interface->tableView("btnFilterHome"), std::logic_error);
    EXPECT_THROW(interface->detailsView("btnFilterHome"), std::logic_error);
    EXPECT_THROW(interface->command("OnNothing"), std::logic_error);
}

TEST_F(QtInterfaceTest, ReturnsTheSameOutletEachTime)
{
    const auto interface = load("FilterWindow");

    EXPECT_EQ(&interface->checkBox("btnFilterHome"), &interface->checkBox("btnFilterHome"));
    EXPECT_NE(&interface->checkBox("btnFilterHome"), &interface->checkBox("btnFilterWork"));
}

TEST_F(QtInterfaceTest, PassesTheClickedBoxToTheHandler)
{
    const auto interface = load("FilterWindow");
    auto& home = interface->checkBox("btnFilterHome");
    View* clicked = nullptr;
    interface->command("OnCheckBoxes").setHandler([&](View* sender) { clicked = sender; });
    interface->window().show();

    click(widgetIn<QCheckBox>(shownWindow(QStringLiteral("FilterWindow")), "btnFilterHome"));

    EXPECT_EQ(clicked, &home);
    EXPECT_EQ(home.state(), CheckState::On);
}

TEST_F(QtInterfaceTest, RunsNoCommandWhenTheProgramSetsAState)
{
    const auto interface = load("FilterWindow");
    int uses = 0;
    count(*interface, "OnCheckBoxes", uses);

    for (const auto state : {CheckState::On, CheckState::Mixed, CheckState::Off}) {
        interface->checkBox("btnFilterHome").setState(state);

        EXPECT_EQ(interface->checkBox("btnFilterHome").state(), state);
    }
    EXPECT_EQ(uses, 0);
}

TEST_F(QtInterfaceTest, AllowsACommandOnlyWhileItHasAHandlerAndIsEnabled)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& action = widgetIn<QAction>(window, "OnOpen");
    auto& button = widgetIn<QPushButton>(window, "btnEmptyOpen");
    const auto enabled = [&] { return std::pair(action.isEnabled(), button.isEnabled()); };
    const std::pair both(true, true);
    const std::pair neither(false, false);
    EXPECT_EQ(enabled(), neither);
    int uses = 0;

    count(*interface, "OnOpen", uses);
    EXPECT_EQ(enabled(), both);
    action.trigger();
    click(button);
    EXPECT_EQ(uses, 2);

    interface->command("OnOpen").setEnabled(false);
    EXPECT_EQ(enabled(), neither);
    action.trigger();
    click(button);
    EXPECT_EQ(uses, 2);

    interface->command("OnOpen").setEnabled(true);
    EXPECT_EQ(enabled(), both);
    interface->command("OnOpen").setHandler({});
    EXPECT_EQ(enabled(), neither);
}

TEST_F(QtInterfaceTest, AddsEntriesToAMenu)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& books = widgetIn<QMenu>(window, "menuSystemBooks");
    auto& menu = interface->menu("menuSystemBooks");
    const auto titles = [&] {
        QStringList texts;
        for (const auto* const action : books.actions()) {
            texts += action->isSeparator() ? QStringLiteral("-") : action->text();
        }
        return texts;
    };
    const auto all = titles();
    EXPECT_EQ(all.size(), 1);
    std::vector<std::string> chosen;

    const auto chooseWork = [&] {
        chosen.emplace_back("Work");
        menu.setEntries({});
    };
    menu.setEntries(
        {{"Family", [&] { chosen.emplace_back("Family"); }}, {"Work & Co.", chooseWork}});

    EXPECT_EQ(titles(), all + QStringList({QStringLiteral("-"), QStringLiteral("Family"),
                                           QStringLiteral("Work && Co.")}));
    books.actions().at(2)->trigger();
    books.actions().at(3)->trigger();
    EXPECT_EQ(chosen, (std::vector<std::string>{"Family", "Work"}));
    EXPECT_EQ(titles(), all);
}

TEST_F(QtInterfaceTest, AsksForTheEntriesOfAMenuWhenTheMenuAroundItOpens)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    auto& books = widgetIn<QMenu>(window, "menuSystemBooks");
    auto& menu = interface->menu("menuSystemBooks");
    int openings = 0;
    menu.setOpeningHandler([&] { ++openings; });

    widgetIn<QMenu>(window, "menuFile").popup(QPoint());
    widgetIn<QMenu>(window, "menuFile").hide();

    EXPECT_EQ(openings, 1);
    menu.setEnabled(false);
    EXPECT_FALSE(books.menuAction()->isEnabled());
}

TEST_F(QtInterfaceTest, KeepsTheMnemonicOfACommandWithANewTitle)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    const auto& action = widgetIn<QAction>(shownWindow(QStringLiteral("MainWindow")), "OnDelete");

    interface->command("OnDelete").setTitle("Now Delete 3 & More…");
    EXPECT_EQ(action.text(), QStringLiteral("Now &Delete 3 && More…"));

    interface->command("OnDelete").setTitle("Delete 4");
    EXPECT_EQ(action.text(), QStringLiteral("&Delete 4"));
}

TEST_F(QtInterfaceTest, PassesNoSenderForAnAction)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    std::optional<View*> sender;
    interface->command("OnReload").setHandler([&](View* from) { sender = from; });

    widgetIn<QAction>(shownWindow(QStringLiteral("MainWindow")), "OnReload").trigger();

    EXPECT_EQ(sender, nullptr);
}

TEST_F(QtInterfaceTest, BlocksCommandsOutsideTheSessionUnlessAlwaysUsable)
{
    const auto main = load("MainWindow");
    const auto filter = load("FilterWindow");
    main->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    int reloads = 0;
    int opens = 0;
    int quits = 0;
    int okays = 0;
    count(*main, "OnReload", reloads);
    count(*main, "OnOpen", opens);
    count(*main, "OnQuit", quits);
    count(*filter, "OnOkay", okays);

    soon([&] {
        // Assistive technologies press without an input event that could be blocked.
        widgetIn<QAction>(window, "OnReload").trigger();
        widgetIn<QPushButton>(window, "btnEmptyOpen").click();
        widgetIn<QAction>(window, "OnQuit").trigger();
        press(shownWindow(QStringLiteral("FilterWindow")), Qt::Key_Return);
        application.abortModal();
    });
    application.runModalForWindow(filter->window());

    EXPECT_EQ(reloads, 0);
    EXPECT_EQ(opens, 0);
    EXPECT_EQ(quits, 1);
    EXPECT_EQ(okays, 1);
}

TEST_F(QtInterfaceTest, AllowsTheQuitShortcutInADialogButNotReload)
{
    const auto main = load("MainWindow");
    const auto filter = load("FilterWindow");
    main->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    // Some platforms have no shortcut for quitting.
    widgetIn<QAction>(window, "OnQuit").setShortcut(Qt::CTRL | Qt::Key_Q);
    int reloads = 0;
    int quits = 0;
    count(*main, "OnReload", reloads);
    count(*main, "OnQuit", quits);
    const auto pressBothIn = [](QWidget& active) {
        active.activateWindow();
        handleEventsUntil([&active] { return active.isActiveWindow(); });
        press(active, Qt::Key_F5);
        press(active, Qt::Key_Q, Qt::ControlModifier);
    };

    soon([&] {
        pressBothIn(shownWindow(QStringLiteral("FilterWindow")));
        EXPECT_EQ(quits, 1);
        // A window manager may focus a blocked window.
        pressBothIn(window);
        EXPECT_EQ(quits, 2);
        application.abortModal();
    });
    application.runModalForWindow(filter->window());
    EXPECT_EQ(reloads, 0);

    pressBothIn(window);
    EXPECT_EQ(quits, 3);
    EXPECT_EQ(reloads, 1);
}

TEST_F(QtInterfaceTest, RunsTheCloseCommandInsteadOfClosing)
{
    const auto interface = load("FilterWindow");
    int cancels = 0;
    count(*interface, "OnCancel", cancels);
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("FilterWindow"));

    pressCloseControl(window);
    EXPECT_EQ(cancels, 1);
    EXPECT_TRUE(window.isVisible());

    press(window, Qt::Key_Escape);
    EXPECT_EQ(cancels, 2);
    EXPECT_TRUE(window.isVisible());

    interface->window().close();
    EXPECT_EQ(cancels, 2);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(QtInterfaceTest, RunsNoCloseCommandOfABlockedWindow)
{
    const auto outer = load("FilterWindow");
    const auto inner = load("FilterWindow");
    int cancels = 0;
    count(*outer, "OnCancel", cancels);
    outer->window().show();
    auto& window = shownWindow(QStringLiteral("FilterWindow"));

    soon([&] {
        pressCloseControl(window);
        application.abortModal();
    });
    application.runModalForWindow(inner->window());

    EXPECT_EQ(cancels, 0);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(QtInterfaceTest, NotifiesTheDelegateOnceWhenTheWindowCloses)
{
    const auto interface = load("MainWindow");
    CountingDelegate delegate;
    interface->window().setDelegate(&delegate);
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));

    pressCloseControl(window);
    EXPECT_EQ(delegate.closes, 1);
    EXPECT_FALSE(window.isVisible());

    interface->window().show();
    interface->window().close();
    EXPECT_EQ(delegate.closes, 2);
}

TEST_F(QtInterfaceTest, DoesNotNotifyTheDelegateWhenItIsDestroyed)
{
    CountingDelegate delegate;
    auto interface = load("MainWindow");
    interface->window().setDelegate(&delegate);
    interface->window().show();

    interface.reset();

    EXPECT_THROW(shownWindow(QStringLiteral("MainWindow")), std::runtime_error);
    EXPECT_EQ(delegate.closes, 0);
}

TEST_F(QtInterfaceTest, CanBeDestroyedOnAnyThread)
{
    // A controller has several owners; the last one may be a job.
    std::shared_ptr<QtInterface> interface = load("ProgressWindow");
    interface->window().show();
    const QPointer<QWidget> window(&shownWindow(QStringLiteral("ProgressWindow")));
    auto& bar = interface->progressIndicator("progress");

    application.detachNewThread("LoadContacts", [&bar, interface] {
        bar.setDoubleValue(1);
        bar.setNeedsDisplay();
    });
    interface.reset();
    handleEventsUntil([&] { return window.isNull(); });

    EXPECT_TRUE(window.isNull());
}

TEST_F(QtInterfaceTest, CanBeDestroyedByItsOwnCommand)
{
    auto interface = load("FilterWindow");
    interface->command("OnOkay").setHandler([&](View* /*sender*/) { interface.reset(); });
    interface->window().show();
    const QPointer<QWidget> window(&shownWindow(QStringLiteral("FilterWindow")));

    press(*window, Qt::Key_Return);
    handleEventsUntil([&] { return window.isNull(); });

    EXPECT_EQ(interface, nullptr);
    EXPECT_TRUE(window.isNull());
}

TEST_F(QtInterfaceTest, FloatsAboveTheMainWindowWithoutFocusOrACloseControl)
{
    const auto main = load("MainWindow");
    const auto progress = load("ProgressWindow");
    main->window().show();
    progress->window().setLevel(WindowLevel::Floating);

    progress->window().show();
    handleEvents();

    auto& window = shownWindow(QStringLiteral("ProgressWindow"));
    EXPECT_EQ(window.windowHandle()->transientParent(),
              shownWindow(QStringLiteral("MainWindow")).windowHandle());
    EXPECT_TRUE(window.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(window.isModal());

    pressCloseControl(window);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(QtInterfaceTest, KeepsAStatusWindowOnTopAndOutOfTheCentre)
{
    const auto main = load("MainWindow");
    const auto status = load("FilterWindow");
    main->window().show();
    auto& mainWindow = shownWindow(QStringLiteral("MainWindow"));
    status->window().setLevel(WindowLevel::Status);

    status->window().show();
    handleEvents();

    auto& window = shownWindow(QStringLiteral("FilterWindow"));
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(window.windowHandle()->transientParent(), mainWindow.windowHandle());
    EXPECT_GT(window.x(), mainWindow.x());
    EXPECT_FALSE(window.isModal());
}

TEST_F(QtInterfaceTest, ReopensAWindowWhereTheUserLeftItButOnTheScreen)
{
    const auto main = load("MainWindow");
    const auto status = load("UpdateWindow");
    main->window().show();
    status->window().setLevel(WindowLevel::Status);
    status->window().show();
    auto& window = shownWindow(QStringLiteral("UpdateWindow"));
    const auto reopenAt = [&](QPoint place, QSize size) {
        window.move(place);
        window.resize(size);
        status->window().close();
        status->window().show();
        return window.frameGeometry();
    };
    const QPoint place(7, 11);
    const auto size = window.size() + QSize(5, 3);

    EXPECT_EQ(reopenAt(place, size).topLeft(), place);
    EXPECT_EQ(window.size(), size);

    const auto screen = window.screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(reopenAt(screen.bottomRight() - QPoint(20, 20), size)));
    EXPECT_TRUE(screen.contains(reopenAt(screen.topLeft() - QPoint(5000, 5000), size)));
}

TEST_F(QtInterfaceTest, RemembersNoPlaceOfAWindowThatWasClosedBeforeItWasShown)
{
    const auto main = load("MainWindow");
    const auto opened = load("ShortcutsWindow");
    const auto closed = load("ShortcutsWindow");
    const auto placeOf = [](QtInterface& interface) {
        interface.window().show();
        const auto place = shownWindow(QStringLiteral("ShortcutsWindow")).pos();
        interface.window().close();
        return place;
    };
    main->window().show();

    closed->window().close();

    EXPECT_EQ(placeOf(*closed), placeOf(*opened));
}

TEST_F(QtInterfaceTest, IsANotificationToScreenReadersUntilItHasTheFocus)
{
    const auto main = load("MainWindow");
    const auto status = load("UpdateWindow");
    main->window().show();
    status->window().show(KeyboardFocus::Leave);
    // The offscreen platform activates every window that it maps.
    auto& mainWindow = shownWindow(QStringLiteral("MainWindow"));
    mainWindow.activateWindow();
    handleEventsUntil([&] { return mainWindow.isActiveWindow(); });
    auto& window = shownWindow(QStringLiteral("UpdateWindow"));
    const auto role = [&] { return QAccessible::queryAccessibleInterface(&window)->role(); };

    EXPECT_EQ(role(), QAccessible::Notification);

    // The user clicks the window.
    window.activateWindow();
    handleEventsUntil([&] { return window.isActiveWindow(); });
    EXPECT_EQ(role(), QAccessible::Dialog);

    status->window().show(KeyboardFocus::Take);
    mainWindow.activateWindow();
    handleEventsUntil([&] { return mainWindow.isActiveWindow(); });
    EXPECT_EQ(role(), QAccessible::Dialog);
}

TEST_F(QtInterfaceTest, TakesTheFocusOnlyForAWindowThatTheUserAskedFor)
{
    const auto main = load("MainWindow");
    const auto status = load("FilterWindow");
    status->window().setLevel(WindowLevel::Status);
    main->window().show();
    auto& mainWindow = shownWindow(QStringLiteral("MainWindow"));

    // The offscreen platform activates every window that it maps, so check the request instead.
    status->window().show(KeyboardFocus::Leave);
    auto& window = shownWindow(QStringLiteral("FilterWindow"));
    EXPECT_TRUE(window.testAttribute(Qt::WA_ShowWithoutActivating));

    mainWindow.activateWindow();
    handleEventsUntil([&] { return mainWindow.isActiveWindow(); });
    status->window().show(KeyboardFocus::Leave);
    handleEvents();
    EXPECT_TRUE(mainWindow.isActiveWindow());

    status->window().show(KeyboardFocus::Take);
    handleEventsUntil([&] { return window.isActiveWindow(); });
    EXPECT_TRUE(window.isActiveWindow());
    EXPECT_FALSE(window.testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(QtInterfaceTest, NamesTheProgramInEveryTitleAfterTheSameDash)
{
    QApplication::setApplicationDisplayName(QStringLiteral("Dunmora"));
    const auto dialog = load("FilterWindow");
    const auto status = load("ProgressWindow");

    dialog->window().show();
    status->window().show();

    EXPECT_EQ(shownWindow(QStringLiteral("FilterWindow")).windowTitle(),
              QStringLiteral("Find Duplicates – Dunmora"));
    EXPECT_EQ(shownWindow(QStringLiteral("ProgressWindow")).windowTitle(),
              QStringLiteral("Dunmora"));
    QApplication::setApplicationDisplayName(QString());
}

TEST_F(QtInterfaceTest, ShowsTitlesAndTextsVerbatim)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));

    interface->window().setTitle("a[*]b");
    interface->button("btnNotes").setTitle("Smith & Sons");
    interface->textField("txtTotal").setStringValue("<b>0 duplicates</b> \xc3\xa9");
    handleEvents();

    EXPECT_EQ(window.windowTitle(), QStringLiteral("a[*][*]b"));

    // A file name may contain any character.
    interface->window().setTitle("a\u202Efcv.\nb – Dunmora");
    EXPECT_EQ(window.windowTitle(), QStringLiteral("afcv. b – Dunmora"));
    EXPECT_EQ(widgetIn<QToolButton>(window, "btnNotes").text(), QStringLiteral("Smith && Sons"));
    const auto& total = widgetIn<QLabel>(window, "txtTotal");
    EXPECT_EQ(total.text(), QStringLiteral("<b>0 duplicates</b> \u00e9"));
    EXPECT_EQ(total.textFormat(), Qt::PlainText);
}

TEST_F(QtInterfaceTest, ShowsALongTitleOfTheFooterInAToolTip)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    const auto size = window.size();
    auto& button = widgetIn<QToolButton>(window, "btnNotes");
    const std::string remark = "“" + std::string(500, 'n') + ".vcf” was skipped & stays.";

    interface->button("btnNotes").setTitle(remark);
    interface->button("btnNotes").setHidden(false);
    handleEvents();

    EXPECT_EQ(window.size(), size);
    EXPECT_LE(window.minimumSizeHint().width(), size.width());
    EXPECT_LT(button.width(), button.sizeHint().width());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Name).toStdString(),
              remark);

    QHelpEvent help(QEvent::ToolTip, {5, 5}, button.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&button, &help);
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("was skipped &amp; stays.")))
        << QToolTip::text().toStdString();
    QToolTip::hideText();
}

TEST_F(QtInterfaceTest, HidesAndShowsViews)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& button = widgetIn<QToolButton>(shownWindow(QStringLiteral("MainWindow")), "btnNotes");
    EXPECT_FALSE(button.isVisible());

    interface->button("btnNotes").setHidden(false);
    EXPECT_TRUE(button.isVisible());

    interface->view("btnNotes").setHidden(true);
    EXPECT_FALSE(button.isVisible());
}

/// Drags URLs over a window and drops them; returns whether both were accepted.
bool drop(QWidget& window, const QList<QUrl>& urls)
{
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window, &enter);
    QDropEvent event({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    event.ignore();
    QCoreApplication::sendEvent(&window, &event);
    handleEvents();
    return enter.isAccepted() && event.isAccepted();
}

TEST_F(QtInterfaceTest, AcceptsDroppedFilesWhileTheCommandIsUsable)
{
    const auto interface = load("MainWindow");
    interface->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    std::vector<std::vector<std::filesystem::path>> dropped;
    interface->setDropHandler("OnOpen", [&](const std::vector<std::filesystem::path>& paths) {
        dropped.push_back(paths);
    });
    const auto book = QUrl::fromLocalFile(QStringLiteral("/books/M\u00fcller & Co.vcf"));

    EXPECT_FALSE(drop(window, {book}));

    interface->command("OnOpen").setHandler([](View* /*sender*/) {});
    EXPECT_TRUE(drop(window, {book}));
    EXPECT_TRUE(drop(window, {book, QUrl::fromLocalFile(QStringLiteral("/cards"))}));
    EXPECT_FALSE(drop(window, {}));
    EXPECT_FALSE(drop(window, {QUrl(QStringLiteral("http://example.com/a.vcf"))}));
    EXPECT_FALSE(drop(window, {book, QUrl(QStringLiteral("http://example.com/a.vcf"))}));

    interface->command("OnOpen").setEnabled(false);
    EXPECT_FALSE(drop(window, {book}));

    const std::filesystem::path path = "/books/M\xc3\xbcller & Co.vcf";
    EXPECT_EQ(dropped, (std::vector<std::vector<std::filesystem::path>>{{path}, {path, "/cards"}}));
}

TEST_F(QtInterfaceTest, IgnoresAFileDroppedJustBeforeAJobOrASession)
{
    const auto main = load("MainWindow");
    const auto filter = load("FilterWindow");
    main->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    int drops = 0;
    main->command("OnOpen").setHandler([](View* /*sender*/) {});
    main->setDropHandler("OnOpen",
                         [&](const std::vector<std::filesystem::path>& /*paths*/) { ++drops; });
    const auto letGo = [&window] {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QStringLiteral("/book.vcf"))});
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window, &enter);
        QDropEvent event({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window, &event);
    };

    letGo();
    main->command("OnOpen").setEnabled(false);
    handleEvents();
    EXPECT_EQ(drops, 0);

    main->command("OnOpen").setEnabled(true);
    letGo();
    soon([&] { application.abortModal(); });
    application.runModalForWindow(filter->window());
    EXPECT_EQ(drops, 0);

    letGo();
    handleEvents();
    EXPECT_EQ(drops, 1);
}

TEST_F(QtInterfaceTest, AcceptsNothingDroppedDuringASession)
{
    const auto main = load("MainWindow");
    const auto filter = load("FilterWindow");
    main->window().show();
    auto& window = shownWindow(QStringLiteral("MainWindow"));
    int drops = 0;
    main->command("OnOpen").setHandler([](View* /*sender*/) {});
    main->setDropHandler("OnOpen",
                         [&](const std::vector<std::filesystem::path>& /*paths*/) { ++drops; });

    soon([&] {
        EXPECT_FALSE(drop(window, {QUrl::fromLocalFile(QStringLiteral("/book.vcf"))}));
        application.abortModal();
    });
    application.runModalForWindow(filter->window());

    EXPECT_EQ(drops, 0);
}

}  // namespace

}  // namespace dunmora::test
