// Runs every job of the real program with windows on a big book and measures how long user events
// wait for the main thread. No time is a failure, because computers differ and have other work.
//
//     event_loop_bench [CARDS]

#include "adapters/bundle/BuildBundle.h"
#include "adapters/defaults/IniUserDefaults.h"
#include "adapters/qt/AlertDialog.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtWorkspace.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "base/NotificationCenter.h"
#include "bench/EventLoopWatch.h"
#include "bench/OffscreenApplication.h"
#include "bench/QtDesktop.h"
#include "bench/big_book.h"
#include "engine/ContactsParser.h"
#include "platform/Platform.h"
#include "programs/dunmora/MainWindow.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "tests/fakes/TemporaryFolder.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

namespace dunmora::bench {

namespace {

/// The stages of a run, from reading the book to showing the table.
struct Search {
    std::string load;
    std::string find;
    std::string table;
};

const Search kFirst{"load", "find", "table"};
const Search kSecond{"open and load", "find again", "table again"};
constexpr auto kDelete = "delete";
constexpr auto kTableOfRest = "table of the rest";

QWidget* shownWindow(const QString& name)
{
    for (auto* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->objectName() == name) {
            return window;
        }
    }
    return nullptr;
}

/// Confirms every dialog and every alert as soon as it is on the screen.
class User final {
public:
    /// `onConfirm` is called right before the dialog of the match fields is confirmed.
    explicit User(std::function<void()> onConfirm) : onConfirm_(std::move(onConfirm))
    {
        QObject::connect(&look_, &QTimer::timeout, &look_, [this] { look(); });
        look_.start(std::chrono::milliseconds(5));
    }

private:
    void look()
    {
        if (auto* const dialog = shownWindow(QStringLiteral("FilterWindow"))) {
            onConfirm_();
            for (auto* const button : dialog->findChildren<QAbstractButton*>()) {
                if (button->property("command").toString() == QLatin1String("OnOkay")) {
                    button->click();
                }
            }
            return;
        }
        for (auto* const window : QApplication::topLevelWidgets()) {
            auto* const alert = qobject_cast<AlertDialog*>(window);
            if (alert != nullptr && alert->isVisible()) {
                alert->accept();
                return;
            }
        }
    }

    std::function<void()> onConfirm_;
    QTimer look_;
};

/// The program, assembled as in `dunmora`.
class Program final {
public:
    explicit Program(const std::filesystem::path& folder) : userDefaults_(folder / "dunmora.conf")
    {
        Desktop::install(desktop_);
        Platform::install(platform_);
        window_.emplace(
            supervised_, platform_,
            [](const std::filesystem::path& path) {
                return std::make_shared<VCardAddressBook>(path);
            },
            "");
    }

    /// Shows the window; reads nothing yet.
    void launch(const std::filesystem::path& book)
    {
        window_->open(book);
        window_->show();
        window_->applicationDidFinishLaunching();
        settle();
    }

    /// Does what the first activation does. Returns when the jobs that it starts have ended.
    void activate()
    {
        window_->applicationDidBecomeActive();
        settle();
    }

    /// Opens a book in place of the open one. Returns when the jobs that it starts have ended.
    void open(const std::filesystem::path& book)
    {
        window_->open(book);
        settle();
    }

    /// Runs a command of the main window. Returns when the jobs that it starts have ended.
    void use(const char* command)
    {
        auto* const window = shownWindow(QStringLiteral("MainWindow"));
        auto* const action = window->findChild<QAction*>(QLatin1String(command));
        if (action == nullptr || !action->isEnabled()) {
            throw std::runtime_error(std::string(command) + " cannot be used");
        }
        action->trigger();
        settle();
    }

private:
    /// Handles events until no job is running and the windows are drawn.
    void settle()
    {
        constexpr int kTurnsToDraw = 50;
        for (int quietTurns = 0; quietTurns < kTurnsToDraw;) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            quietTurns = supervised_.isBusy() ? 0 : quietTurns + 1;
        }
    }

    QtDesktop qt_;
    SupervisedApplication supervised_{qt_.application};
    Desktop desktop_{supervised_,          qt_.interfaceLoader, qt_.openPanel,
                     qt_.connectionOpener, qt_.textFolding,     qt_.savePanel};
    IniUserDefaults userDefaults_;
    QtAlert alert_{qt_.application};
    QtWorkspace workspace_{qt_.application};
    BuildBundle bundle_;
    Platform platform_{nullptr, userDefaults_, alert_, workspace_, bundle_};
    // Created after the ports are installed.
    std::optional<MainWindow> window_;
};

void requireRows(std::size_t rows)
{
    if (ContactsParser::parser().duplicates().size() != rows) {
        throw std::runtime_error("the table does not have the rows that it should have");
    }
}

constexpr int kColumnWidth = 20;

template <typename... Cells>
void printRow(const Cells&... cells)
{
    std::cout << std::fixed << std::setprecision(1);
    ((std::cout << std::setw(kColumnWidth) << cells), ...) << std::endl;
}

void measure(std::size_t cards)
{
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "book.vcf";
    test::write(file, bigBook({.cards = cards, .percentWithCopy = 100}));

    EventLoopWatch watch;
    const Search* search = &kFirst;
    // The first observer, because the others' work on the main thread is the table's stage.
    NotificationCenter::defaultCenter().addObserver(
        &watch, kMsgFinished, [&](const Notification& notification) {
            if (notification.text() == kJobFinding) {
                watch.begin(search->table);
            } else if (notification.text() == kJobDeleting) {
                watch.begin(kTableOfRest);
            }
        });
    const User user([&] { watch.begin(search->find); });
    Program program(folder.path());
    program.launch(file);

    watch.begin(search->load);
    program.activate();
    watch.end();
    requireRows(cards);

    search = &kSecond;
    watch.begin(search->load);
    program.open(file);
    watch.end();
    requireRows(cards);

    watch.begin(kDelete);
    program.use("OnDelete");
    watch.end();
    requireRows(cards / 2);

    NotificationCenter::defaultCenter().removeObserver(&watch, kMsgFinished);
    printRow("of " + std::to_string(cards), "took ms", "longest gap ms", "its work ms");
    for (const auto& stage : {kFirst.load, kFirst.find, kFirst.table, kSecond.load, kSecond.find,
                              kSecond.table, std::string(kDelete), std::string(kTableOfRest)}) {
        const auto seen = watch.seenIn(stage);
        printRow(stage, seen.lasted.count(), seen.longestGap.count(), seen.longestWork.count());
    }
}

}  // namespace

}  // namespace dunmora::bench

int main(int argc, char** argv)
{
    constexpr std::size_t kCards = 100'000;
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    try {
        const dunmora::bench::OffscreenApplication application(argc, argv);
        dunmora::bench::measure(arguments.size() > 1 ? std::stoul(arguments[1]) : kCards);
    } catch (const std::exception& error) {
        std::cerr << "event_loop_bench: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
