#include "adapters/qt/RememberedWindow.h"

#include "adapters/qt/ScreenFit.h"
#include "platform/TableView.h"
#include "tests/adapters/qt/CountedRows.h"
#include "tests/adapters/qt/QtTest.h"
#include "tests/fakes/FakeWindowMemory.h"

#include <QAction>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMainWindow>
#include <QScreen>
#include <QSplitter>
#include <QTableView>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace dunmora::test {

namespace {

using Texts = WindowMemory::Texts;

/// A splitter that the test moves as the user would.
class MovableSplitter final : public QSplitter {
public:
    using QSplitter::moveSplitter;
    using QSplitter::QSplitter;
};

/// A window with a splitter and a checkable command, in one run of a program.
class OneRun {
public:
    explicit OneRun(std::shared_ptr<FakeWindowMemory> memory) : memory_(std::move(memory))
    {
        window.setObjectName(QStringLiteral("MainWindow"));
        window.resize(400, 300);
        splitter.setObjectName(QStringLiteral("panes"));
        splitter.setProperty("remembered", true);
        for (int i = 0; i < 2; ++i) {
            auto* const pane = new QWidget;
            pane->setMinimumHeight(10);
            splitter.addWidget(pane);
            splitter.setStretchFactor(i, 1);
        }
        splitter.setSizes({1000, 1000});
        window.setCentralWidget(&splitter);
        other.setObjectName(QStringLiteral("OnOther"));
        other.setCheckable(true);
        command.setObjectName(QStringLiteral("OnDetails"));
        command.setProperty("remembered", true);
        command.setCheckable(true);
        command.setChecked(true);
        remembered.emplace(window, memory_, std::chrono::milliseconds(0));
    }
    ~OneRun()
    {
        remembered.reset();
        window.takeCentralWidget()->setParent(nullptr);
    }
    OneRun(const OneRun&) = delete;
    OneRun& operator=(const OneRun&) = delete;

    /// Shows the window and waits until it is as it stays without the user.
    void show()
    {
        window.show();
        handleEvents();
        handleEvents();
    }

    Texts stored() const { return memory_->load("MainWindow"); }

    /// Waits until everything before this has been stored, and returns all that was.
    Texts storedInTheEnd()
    {
        const auto end = std::to_string(++ends_);
        remembered->change("end", end);
        expectStored("end", end);
        auto texts = stored();
        texts.erase("end");
        return texts;
    }

    /// Waits until this text is stored.
    void expectStored(const std::string& key, const std::string& text) const
    {
        handleEventsUntil([&] {
            const auto texts = stored();
            const auto found = texts.find(key);
            return found != texts.end() && found->second == text;
        });
    }

    MovableSplitter splitter{Qt::Vertical};
    QMainWindow window;
    QAction command{&window};
    /// A command that is not remembered.
    QAction other{&window};
    std::optional<RememberedWindow> remembered;

private:
    std::shared_ptr<FakeWindowMemory> memory_;
    int ends_ = 0;
};

class RememberedWindowTest : public QtTest {
protected:
    void store(const Texts& texts) { memory_->store("MainWindow", texts); }

    std::shared_ptr<FakeWindowMemory> memory_ = std::make_shared<FakeWindowMemory>();
};

TEST_F(RememberedWindowTest, StoresNothingWhileTheUserLeavesItAsItIs)
{
    OneRun run(memory_);

    run.show();
    run.window.close();
    handleEvents();

    EXPECT_EQ(run.storedInTheEnd(), Texts());
    EXPECT_EQ(memory_->stores(), 1);
    EXPECT_EQ(run.window.size(), QSize(400, 300));
}

TEST_F(RememberedWindowTest, HasTheSizeAndThePlaceThatTheUserGaveIt)
{
    {
        OneRun run(memory_);
        run.show();
        run.window.resize(500, 350);
        run.expectStored("size", "500 350");
        run.window.move(30, 40);
        run.expectStored("place", "30 40");
    }

    OneRun next(memory_);
    next.show();

    EXPECT_EQ(next.window.size(), QSize(500, 350));
    EXPECT_EQ(next.window.pos(), QPoint(30, 40));
}

TEST_F(RememberedWindowTest, IsMaximizedAgainAndKeepsItsOrdinarySize)
{
    {
        OneRun run(memory_);
        run.show();
        run.window.resize(500, 350);
        run.expectStored("size", "500 350");
        run.window.showMaximized();
        run.expectStored("maximized", "true");
        EXPECT_EQ(run.stored().at("size"), "500 350");
    }

    OneRun next(memory_);
    next.show();
    EXPECT_TRUE(next.window.isMaximized());
    next.window.showNormal();

    next.expectStored("maximized", "false");
    EXPECT_EQ(next.window.size(), QSize(500, 350));
}

TEST_F(RememberedWindowTest, HasTheSizesOfItsPanesThatTheUserChose)
{
    int first = 0;
    {
        OneRun run(memory_);
        run.show();
        run.splitter.moveSplitter(60, 1);
        first = run.splitter.sizes().front();
        run.expectStored("panes.sizes",
                         std::to_string(first) + " " + std::to_string(run.splitter.sizes().back()));
    }

    OneRun next(memory_);
    next.show();

    EXPECT_NEAR(next.splitter.sizes().front(), first, 1);
    EXPECT_GT(next.splitter.sizes().back(), 2 * first);
}

TEST_F(RememberedWindowTest, UsesACommandWhoseCheckMarkTheUserChanged)
{
    {
        OneRun run(memory_);
        run.show();
        run.command.trigger();
        run.expectStored("OnDetails.checked", "false");
    }

    OneRun next(memory_);
    int uses = 0;
    QObject::connect(&next.command, &QAction::triggered, &next.window, [&uses] { ++uses; });
    EXPECT_TRUE(next.command.isChecked());
    next.show();
    next.window.hide();
    next.show();

    EXPECT_FALSE(next.command.isChecked());
    EXPECT_EQ(uses, 1);
    EXPECT_EQ(next.storedInTheEnd(), (Texts{{"OnDetails.checked", "false"}}));
}

TEST_F(RememberedWindowTest, StoresNoCheckMarkThatTheProgramSetsBeforeItIsShown)
{
    store({{"OnDetails.checked", "false"}});
    OneRun run(memory_);

    run.command.setChecked(false);
    run.command.setChecked(true);
    handleEvents();
    handleEvents();
    run.show();

    EXPECT_FALSE(run.command.isChecked());
    EXPECT_EQ(run.storedInTheEnd(), (Texts{{"OnDetails.checked", "false"}}));
}

TEST_F(RememberedWindowTest, RemembersOnlyTheCommandsThatAreToBeRemembered)
{
    store({{"OnOther.checked", "true"}});
    OneRun run(memory_);

    run.show();
    EXPECT_FALSE(run.other.isChecked());
    run.other.trigger();
    run.other.trigger();

    EXPECT_EQ(run.storedInTheEnd(), (Texts{{"OnOther.checked", "true"}}));
}

TEST_F(RememberedWindowTest, StoresNoSizeOfAWindowThatTheUserDoesNotSee)
{
    OneRun run(memory_);
    run.show();

    run.window.showMinimized();
    run.window.resize(500, 350);
    handleEvents();
    EXPECT_EQ(run.storedInTheEnd(), Texts());

    run.window.showNormal();
    run.window.hide();
    run.window.resize(450, 320);
    run.command.trigger();

    EXPECT_EQ(run.storedInTheEnd(), (Texts{{"OnDetails.checked", "false"}}));
}

TEST_F(RememberedWindowTest, StoresOnlyWhatTheUserHasChanged)
{
    OneRun run(memory_);
    run.show();

    run.command.trigger();

    EXPECT_EQ(run.storedInTheEnd(), (Texts{{"OnDetails.checked", "false"}}));
}

TEST_F(RememberedWindowTest, IsNeverLargerThanTheScreen)
{
    store({{"size", "5000 4000"}, {"place", "20 30"}});
    OneRun run(memory_);

    run.show();

    const auto space = spaceWithinFrame(run.window);
    EXPECT_EQ(run.window.size(), space);
    EXPECT_TRUE(run.window.screen()->availableGeometry().contains(run.window.geometry()));
    // Another screen may have room for it.
    EXPECT_EQ(run.storedInTheEnd().at("size"), "5000 4000");
}

TEST_F(RememberedWindowTest, IsNeverOffTheScreen)
{
    for (const char* const place : {"90000 90000", "-90000 0", "0 -300"}) {
        store({{"place", place}});
        OneRun run(memory_);

        run.show();

        EXPECT_TRUE(run.window.screen()->availableGeometry().contains(run.window.geometry()))
            << place;
    }
}

TEST_F(RememberedWindowTest, HasItsFrameOnTheScreen)
{
    const auto area = QGuiApplication::primaryScreen()->availableGeometry();
    const auto corner = area.bottomRight() - QPoint(250, 200);
    store({{"place", std::to_string(corner.x()) + " " + std::to_string(corner.y())}});
    OneRun run(memory_);

    const auto frame = area.size() - spaceWithinFrame(run.window);
    EXPECT_EQ(run.window.pos(), area.bottomRight() + QPoint(1, 1) - QPoint(400, 300) -
                                    QPoint(frame.width(), frame.height()));
}

class RememberedWindowDamageTest : public RememberedWindowTest,
                                   public testing::WithParamInterface<Texts> {};

TEST_P(RememberedWindowDamageTest, IsAsItIsAtFirst)
{
    OneRun fresh(std::make_shared<FakeWindowMemory>());
    fresh.show();
    const auto sizes = fresh.splitter.sizes();
    store(GetParam());
    OneRun run(memory_);

    run.show();

    EXPECT_EQ(run.window.size(), QSize(400, 300));
    EXPECT_FALSE(run.window.isMaximized());
    EXPECT_EQ(run.splitter.sizes(), sizes);
    EXPECT_TRUE(run.command.isChecked());
    EXPECT_TRUE(run.window.screen()->availableGeometry().contains(run.window.geometry()));
}

INSTANTIATE_TEST_SUITE_P(Texts, RememberedWindowDamageTest,
                         testing::Values(Texts{{"size", "0 0"}, {"place", "x y"}},
                                         Texts{{"size", "-5 400"}, {"place", "1"}},
                                         Texts{{"size", "500 -5"}, {"maximized", "maybe"}},
                                         Texts{{"size", "500"}},
                                         Texts{{"size", "99999999999 1"}, {"maximized", "1"}},
                                         Texts{{"panes.sizes", "100"}, {"OnDetails.checked", "0"}},
                                         Texts{{"panes.sizes", "1 2 3"}, {"OnDetails.checked", ""}},
                                         Texts{{"panes.sizes", "0 200"}, {"unknown", "true"}},
                                         Texts{{"panes.sizes", "-1 200"}}));

TEST_F(RememberedWindowTest, IsOnlyOneThatIsToBeRemembered)
{
    memory_->store("ShortcutsWindow", {{"size", "777 555"}});
    loader.setWindowMemory(memory_);

    const auto interface = load("ShortcutsWindow");
    interface->window().show();

    EXPECT_NE(shownWindow(QStringLiteral("ShortcutsWindow")).size(), QSize(777, 555));
}

TEST_F(RememberedWindowTest, OfTheProgramRemembersItsDetailsAndColumns)
{
    loader.setWindowMemory(memory_);
    CountedRows rows;
    rows.rows.resize(2);
    const auto show = [&](Interface& interface) -> QWidget& {
        interface.command("OnDetails").setHandler([&interface](View* /*sender*/) {
            interface.command("OnDetails").setChecked(false);
            interface.view("vwDetails").setHidden(true);
        });
        interface.command("OnDetails").setChecked(true);
        auto& table = interface.tableView("tableContacts");
        table.setDataSource(&rows, &rows);
        table.reloadData();
        interface.view("vwEmpty").setHidden(true);
        interface.view("vwReview").setHidden(false);
        table.setHidden(false);
        interface.window().show();
        handleEvents();
        return shownWindow(QStringLiteral("MainWindow"));
    };
    int width = 0;
    {
        const auto interface = load("MainWindow");
        auto& window = show(*interface);
        auto& header = *widgetIn<QTableView>(window, "tableContacts").horizontalHeader();
        width = header.sectionSize(1) + 37;
        header.resizeSection(1, width);
        widgetIn<QAction>(window, "OnDetails").trigger();
        handleEventsUntil([&] {
            const auto texts = memory_->load("MainWindow");
            return texts.contains("tableContacts.columns") && texts.contains("OnDetails.checked");
        });
        interface->tableView("tableContacts").setDataSource(nullptr, nullptr);
    }
    handleEvents();

    const auto next = load("MainWindow");
    auto& window = show(*next);

    EXPECT_TRUE(widgetIn<QWidget>(window, "vwDetails").isHidden());
    EXPECT_FALSE(widgetIn<QAction>(window, "OnDetails").isChecked());
    EXPECT_EQ(widgetIn<QTableView>(window, "tableContacts").columnWidth(1), width);
    next->tableView("tableContacts").setDataSource(nullptr, nullptr);
}

}  // namespace

}  // namespace dunmora::test
