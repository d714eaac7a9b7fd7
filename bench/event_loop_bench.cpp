// Runs every job of the real program with windows on a big book, its update check at launch, and
// the commands that change or show all of its rows, and measures how long user events wait for the
// main thread. No time is a failure, because computers differ and have other work.
//
//     event_loop_bench [CARDS]

#include "adapters/defaults/IniUserDefaults.h"
#include "adapters/qt/AlertDialog.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtConnectionOpener.h"
#include "adapters/qt/QtWorkspace.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "base/NotificationCenter.h"
#include "bench/EventLoopWatch.h"
#include "bench/OffscreenApplication.h"
#include "bench/QtDesktop.h"
#include "bench/UpdateService.h"
#include "bench/big_book.h"
#include "engine/ContactsParser.h"
#include "platform/OpenedBook.h"
#include "platform/Platform.h"
#include "programs/dunmora/MainWindow.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "programs/dunmora/UserGuide.h"
#include "tests/fakes/TemporaryFolder.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTableView>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::bench {

namespace {

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
                const auto book = std::make_shared<VCardAddressBook>(path);
                return OpenedBook{book, book, book};
            },
            "", UserGuide(folder, "guide"));
    }

    /// Shows the window; reads nothing yet.
    void show(const std::filesystem::path& book)
    {
        window_->open(book);
        window_->show();
        settle();
    }

    /// Does what the end of the launch does. Returns when the update check has ended.
    void launch()
    {
        window_->applicationDidFinishLaunching();
        while (!updateService_.hasReplied()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
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
        auto* const action = mainWindowsOwn<QAction>(command);
        if (action == nullptr || !action->isEnabled()) {
            throw std::runtime_error(std::string(command) + " cannot be used");
        }
        action->trigger();
        settle();
    }

    /// Presses a key in the table, `times` as fast as the windows are drawn.
    void press(Qt::Key key, int times = 1)
    {
        auto* const table = mainWindowsOwn<QTableView>("tableContacts");
        for (int i = 0; i < times; ++i) {
            QKeyEvent pressed(QEvent::KeyPress, key, Qt::NoModifier);
            QCoreApplication::sendEvent(table, &pressed);
            QCoreApplication::processEvents();
        }
        settle();
    }

    /// Copies the selected rows. Returns when they are on the clipboard.
    static void copy()
    {
        QGuiApplication::clipboard()->clear();
        QKeyEvent pressed(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
        QCoreApplication::sendEvent(mainWindowsOwn<QTableView>("tableContacts"), &pressed);
        while (QGuiApplication::clipboard()->text().isEmpty()) {
            QCoreApplication::processEvents();
        }
    }

    void selectAll()
    {
        mainWindowsOwn<QTableView>("tableContacts")->selectAll();
        settle();
    }

    /// Selects a row by its place in the table.
    void select(int row)
    {
        mainWindowsOwn<QTableView>("tableContacts")->selectRow(row);
        settle();
    }

    /// Scrolls through the table's first rows.
    void scrollThrough(int rows)
    {
        auto* const table = mainWindowsOwn<QTableView>("tableContacts");
        for (int row = 0; row < std::min(rows, table->model()->rowCount()); row += kRowsInView) {
            table->scrollTo(table->model()->index(row, 0), QAbstractItemView::PositionAtTop);
            QCoreApplication::processEvents();
        }
        settle();
    }

    /// Types into the filter, letter by letter.
    void filterFor(const QString& text)
    {
        auto* const line = mainWindowsOwn<QLineEdit>("tableContactsFilter");
        for (int letters = 1; letters <= text.size(); ++letters) {
            line->setText(text.left(letters));
            settle();
        }
    }

private:
    static constexpr int kRowsInView = 15;

    template <typename Object>
    static Object* mainWindowsOwn(const char* name)
    {
        return shownWindow(QStringLiteral("MainWindow"))->findChild<Object*>(QLatin1String(name));
    }

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
    QtConnectionOpener connectionOpener_;
    Desktop desktop_{supervised_,     qt_.interfaceLoader, qt_.openPanel,   connectionOpener_,
                     qt_.textFolding, qt_.savePanel,       qt_.numberFormat};
    IniUserDefaults userDefaults_;
    QtAlert alert_{qt_.application};
    QtWorkspace workspace_{qt_.application};
    UpdateService updateService_;
    Platform platform_{nullptr, userDefaults_, alert_, workspace_, updateService_};
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

/// People with a photo of two megabytes, each of them twice.
std::string cardsWithPhotos(std::size_t people)
{
    constexpr int kWidth = 1800;
    constexpr int kHeight = 1350;
    QImage noise(kWidth, kHeight, QImage::Format_RGB32);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(noise.bits()),
                                          qsizetype{kWidth} * kHeight);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    noise.save(&buffer, "JPEG");
    const auto photo = jpeg.toBase64().toStdString();

    std::string text;
    for (std::size_t i = 0; i < 2 * people; ++i) {
        text += "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:photo-" + std::to_string(i) + "\r\nN:Photo" +
                std::to_string(i / 2) + ";Ann;;;\r\nPHOTO;ENCODING=b;TYPE=JPEG:" + photo +
                "\r\nEND:VCARD\r\n";
    }
    return text;
}

/// Copies of one person, each with an e-mail address that the others do not have.
std::string copiesOfOnePerson(std::size_t copies)
{
    std::string text;
    for (std::size_t i = 0; i < copies; ++i) {
        const auto number = std::to_string(i);
        text += "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:copy-";
        text += number;
        text += "\r\nN:Lee;Ann;;;\r\nTEL;TYPE=CELL:+1 555 0100\r\nEMAIL:ann";
        text += number;
        text += "@example.com\r\nEND:VCARD\r\n";
    }
    return text;
}

/// Does one thing after the other, each as a stage of its own.
class Course final {
public:
    explicit Course(EventLoopWatch& watch) : watch_(watch) {}

    /// Begins a stage that lasts until the next one begins. Thread: any.
    void begin(const std::string& stage)
    {
        {
            const std::lock_guard guard(mutex_);
            stages_.push_back(stage);
        }
        watch_.begin(stage);
    }

    template <typename Work>
    void run(const std::string& stage, const Work& work)
    {
        begin(stage);
        work();
        watch_.end();
    }

    void print(std::size_t cards) const
    {
        printRow("of " + std::to_string(cards), "took ms", "longest gap ms", "its work ms");
        for (const auto& stage : stages_) {
            const auto seen = watch_.seenIn(stage);
            printRow(stage, seen.lasted.count(), seen.longestGap.count(), seen.longestWork.count());
        }
    }

private:
    EventLoopWatch& watch_;
    std::mutex mutex_;
    std::vector<std::string> stages_;
};

/// The commands that change the marks of all rows.
void changeAllMarks(Course& course, Program& program)
{
    program.scrollThrough(10'000);
    program.selectAll();
    course.run("Select All, Space", [&] { program.press(Qt::Key_Space); });
    course.run("Space again", [&] { program.press(Qt::Key_Space); });
    course.run("Copy", [] { Program::copy(); });
    course.run("Check All Shown", [&] { program.use("OnCheckShown"); });
    course.run("undo", [&] { program.use("OnUndoMarks"); });
    course.run("redo", [&] { program.use("OnRedoMarks"); });
    course.run("Keep One of Each", [&] { program.use("OnKeepOneOfEach"); });
    course.run("Uncheck All Shown", [&] { program.use("OnUncheckShown"); });
    course.run("Restore Proposal", [&] { program.use("OnRestoreProposal"); });
    program.select(1);
    course.run("Space in one row", [&] { program.press(Qt::Key_Space); });
}

/// The commands that show other rows or details.
void look(Course& course, Program& program, int rowsWithPhotos)
{
    program.press(Qt::Key_Home);
    course.run("arrow key, photos", [&] { program.press(Qt::Key_Down, rowsWithPhotos); });
    constexpr int kSteps = 200;
    course.run("arrow key", [&] { program.press(Qt::Key_Down, kSteps); });
    course.run("Need a Look", [&] { program.use("OnNeedsLook"); });
    course.run("all rows again", [&] { program.use("OnNeedsLook"); });
    program.use("OnFilter");
    course.run("filter", [&] { program.filterFor(QStringLiteral("ann")); });
    program.selectAll();
    course.run("filter, Space", [&] { program.press(Qt::Key_Space); });
    course.run("filter removed", [&] { program.press(Qt::Key_Escape); });
}

void measure(std::size_t cards)
{
    constexpr std::size_t kPeopleWithPhotos = 4;
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "book.vcf";
    const auto oneGroup = folder.path() / "one.vcf";
    test::write(file,
                cardsWithPhotos(kPeopleWithPhotos) +
                    bigBook({.cards = cards - 2 * kPeopleWithPhotos, .percentWithCopy = 100}));
    test::write(oneGroup, copiesOfOnePerson(cards));

    EventLoopWatch watch;
    Course course(watch);
    std::string run;
    // The first observer, because the others' work on the main thread is the table's stage.
    NotificationCenter::defaultCenter().addObserver(
        &watch, kMsgFinished, [&](const Notification& notification) {
            if (notification.text() == kJobFinding) {
                course.begin("table" + run);
            } else if (notification.text() == kJobDeleting) {
                course.begin("table of the rest");
            }
        });
    const User user([&] { course.begin("find" + run); });
    Program program(folder.path());
    course.run("show the window", [&] { program.show(file); });
    course.run("launch", [&] { program.launch(); });

    course.run("load", [&] { program.activate(); });
    requireRows(cards);
    changeAllMarks(course, program);
    look(course, program, 2 * kPeopleWithPhotos);

    program.use("OnUncheckShown");
    run = " again";
    course.run("Reload", [&] { program.use("OnReload"); });
    requireRows(cards);

    program.use("OnRestoreProposal");
    course.run("delete", [&] { program.use("OnDelete"); });
    requireRows(cards / 2);

    run = " one group";
    course.run("open", [&] { program.open(oneGroup); });
    requireRows(cards);
    program.select(static_cast<int>(cards) - 1);
    course.run("Keep Only This Copy", [&] { program.use("OnKeepOnly"); });
    course.run("its undo", [&] { program.use("OnUndoMarks"); });
    course.run("its arrow key", [&] { program.press(Qt::Key_Up, 20); });

    NotificationCenter::defaultCenter().removeObserver(&watch, kMsgFinished);
    course.print(cards);
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
