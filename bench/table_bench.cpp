#include "app/DunmoraAppDelegate.h"
#include "base/NotificationCenter.h"
#include "bench/BenchPlatform.h"
#include "bench/QtDesktop.h"
#include "engine/ContactsParser.h"
#include "platform/OpenPanel.h"
#include "platform/TableView.h"
#include "platform/Window.h"
#include "ui/ContactsController.h"
#include "ui/ReviewController.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>

namespace dunmora::bench {

namespace {

constexpr std::int64_t kFewRows = 100'000;
constexpr std::int64_t kManyRows = 1'000'000;

/// The main window with a review in which everyone has a copy. All measurements with the same
/// number of rows share the engine's result.
class Review final {
public:
    explicit Review(const benchmark::State& state)
        : platform_(static_cast<std::size_t>(state.range(0)), Twice::Everyone)
    {
        engine_.load();
        engine_.findDupes();
        interface_->tableView("tableContacts").setDataSource(&contacts, &review);
        // As large as on a current screen.
        table.window()->resize(1920, 1080);
        interface_->window().show();
        reload();
        review.jobsEnded();
        QtDesktop::handleEvents();
    }
    ~Review()
    {
        interface_->window().close();
        engine_.reset();
        engine_.contacts().clear();
    }
    Review(const Review&) = delete;
    Review& operator=(const Review&) = delete;

    /// Updates the table as the end of a search or of a deletion does.
    void reload()
    {
        const Payload none;
        contacts.OnReloadContacts({kMsgReload, nullptr, none});
    }

    /// Does what the menu entry of a command does.
    void use(const char* command)
    {
        table.window()->findChild<QAction*>(QLatin1String(command))->trigger();
    }

    /// Draws the visible part.
    void draw() { table.viewport()->repaint(); }

private:
    template <typename Widget>
    static Widget& widgetNamed(const char* name)
    {
        for (auto* const window : QApplication::topLevelWidgets()) {
            if (auto* const widget = window->findChild<Widget*>(QLatin1String(name))) {
                return *widget;
            }
        }
        throw std::logic_error(std::string("no widget is named ") + name);
    }

    BenchPlatform platform_;
    QtDesktop desktop_;
    ContactsParser& engine_ = ContactsParser::parser();
    std::unique_ptr<Interface> interface_ = desktop_.interfaceLoader.load("MainWindow");
    DunmoraAppDelegate delegate_;

public:
    ContactsController contacts{*interface_, [this] { delegate_.LoadContacts(); }};
    ReviewController review{*interface_, contacts, [](OpenPanel::Kind /*kind*/) { return false; }};
    QTableView& table = widgetNamed<QTableView>("tableContacts");
    QLineEdit& filter = widgetNamed<QLineEdit>("tableContactsFilter");
};

/// This process's processor time in seconds.
double processorTime()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Draws one frame of scrolling, in which all visible rows are new.
void scrollFrame(benchmark::State& state)
{
    static double frameOfFewRows = 0;
    const auto review = std::make_unique<Review>(state);
    auto& bar = *review->table.verticalScrollBar();
    // Far enough to show other rows each time, all over the table.
    constexpr int kFramesFromEndToEnd = 1009;
    const int step = std::max(bar.maximum() / kFramesFromEndToEnd, bar.pageStep());

    const auto begin = processorTime();
    while (state.KeepRunning()) {
        bar.setValue(bar.value() + step <= bar.maximum() ? bar.value() + step : bar.value() % step);
        review->draw();
    }
    const auto frame = (processorTime() - begin) / static_cast<double>(state.iterations());

    if (state.range(0) == kFewRows) {
        frameOfFewRows = frame;
    }
    state.counters["x_fewer_rows"] = frame / frameOfFewRows;
    state.counters["rows_in_view"] =
        static_cast<double>(bar.pageStep()) / review->table.rowHeight(0);
}

/// Types one letter into the filter and waits until the matching rows are drawn. Searches all rows
/// each time.
void typeIntoFilter(benchmark::State& state)
{
    const auto review = std::make_unique<Review>(state);
    bool isFound = false;
    QObject::connect(review->table.model(), &QAbstractItemModel::modelReset, &review->table,
                     [&isFound] { isFound = true; });
    review->review.OnFilter(nullptr);
    // The bar is on the screen before the user types.
    QtDesktop::handleEvents();
    const QString first = QStringLiteral("7");
    const QString second = QStringLiteral("3");
    // Processor time, because the longest of many turns would often be one that waited for other
    // programs.
    double longest = 0;
    const auto measured = [&longest](const auto& work) {
        const auto begin = processorTime();
        work();
        longest = std::max(longest, processorTime() - begin);
    };

    while (state.KeepRunning()) {
        isFound = false;
        measured([&] { review->filter.setText(review->filter.text() == first ? second : first); });
        while (!isFound) {
            measured([] { QCoreApplication::processEvents(); });
        }
        measured([&] { review->draw(); });
    }

    constexpr double kMillisecondsPerSecond = 1e3;
    state.counters["longest_turn_ms"] = longest * kMillisecondsPerSecond;
}

/// Selects every row and checks or unchecks all of them in one operation.
void selectAllAndMark(benchmark::State& state)
{
    const auto review = std::make_unique<Review>(state);
    bool on = true;

    while (state.KeepRunning()) {
        review->table.clearSelection();
        review->table.selectAll();
        review->use(on ? "OnCheckSelected" : "OnUncheckSelected");
        on = !on;
        review->draw();
    }
}

/// Undoes and redoes a step that has changed the marks of all rows, one after the other.
void undoAndRedoAll(benchmark::State& state)
{
    const auto review = std::make_unique<Review>(state);
    review->use("OnCheckShown");
    review->use("OnUncheckShown");
    bool isUndone = false;

    while (state.KeepRunning()) {
        review->use(isUndone ? "OnRedoMarks" : "OnUndoMarks");
        isUndone = !isUndone;
        review->draw();
    }
}

/// Restores the proposal after all marks have been changed.
void restoreProposal(benchmark::State& state)
{
    const auto review = std::make_unique<Review>(state);

    while (state.KeepRunning()) {
        state.PauseTiming();
        review->use("OnUncheckShown");
        state.ResumeTiming();
        review->use("OnRestoreProposal");
        review->draw();
    }
}

/// Loads the engine's rows into the table and draws the first ones.
void reloadTable(benchmark::State& state)
{
    const auto review = std::make_unique<Review>(state);

    while (state.KeepRunning()) {
        review->reload();
        review->draw();
    }
}

BENCHMARK(scrollFrame)->Arg(kFewRows)->Arg(kManyRows)->Unit(benchmark::kMillisecond);
BENCHMARK(typeIntoFilter)->Arg(kFewRows)->Unit(benchmark::kMillisecond);
BENCHMARK(selectAllAndMark)->Arg(kFewRows)->Unit(benchmark::kMillisecond);
BENCHMARK(undoAndRedoAll)->Arg(kFewRows)->Unit(benchmark::kMillisecond);
BENCHMARK(restoreProposal)->Arg(kFewRows)->Unit(benchmark::kMillisecond);
BENCHMARK(reloadTable)->Arg(kFewRows)->Arg(kManyRows)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace dunmora::bench
