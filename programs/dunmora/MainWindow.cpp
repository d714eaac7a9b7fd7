#include "programs/dunmora/MainWindow.h"

#include "base/JobThreads.h"
#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "platform/AddressBook.h"
#include "platform/Alert.h"
#include "platform/Bundle.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "platform/TableView.h"
#include "platform/Window.h"
#include "programs/dunmora/FailureText.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "text/DisplayText.h"
#include "text/WindowTitle.h"
#include "ui/ProgressWindowController.h"

#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kName = "Dunmora";
constexpr std::string_view kTable = "tableContacts";

std::unique_ptr<Interface> mainInterface()
{
    auto interface = Desktop::current().interfaceLoader.load("MainWindow");
    if (!interface) {
        throw std::runtime_error("The main window cannot be loaded. Reinstall Dunmora.");
    }
    return interface;
}

/// The absolute path of the address book, without a separator at its end.
std::filesystem::path wholePath(const std::filesystem::path& path)
{
    std::error_code error;
    auto whole = std::filesystem::absolute(path, error).lexically_normal();
    if (error) {
        whole = path;
    }
    return whole.has_filename() ? whole : whole.parent_path();
}

/// The name of the address book for its user: the last component of its path.
std::string bookName(const std::filesystem::path& path)
{
    const auto whole = wholePath(path);
    return whole.has_filename() ? whole.filename().string() : whole.string();
}

}  // namespace

MainWindow::MainWindow(SupervisedApplication& application, Platform& platform,
                       MakeAddressBook makeAddressBook, std::string libraries, UserGuide guide)
    : application_(application),
      platform_(platform),
      makeAddressBook_(std::move(makeAddressBook)),
      libraries_(std::move(libraries)),
      guide_(std::move(guide)),
      interface_(mainInterface()),
      contacts_(*interface_, [this] { delegate_.LoadContacts(); }),
      review_(*interface_, contacts_, [this](OpenPanel::Kind kind) { return openBook(kind); }),
      undoDelete_(*interface_, [this](const Restoration& result) { reloadAfter(result); }),
      systemBooks_(
          *interface_, application_,
          [this](std::string_view name, const std::filesystem::path& path) { openAs(name, path); }),
      shortcuts_(*interface_),
      updateMenu_(*interface_)
{
    auto& window = interface_->window();
    window.setTitle(std::string(kName));
    window.setDelegate(&delegate_);
    delegate_.setWindow(&window);
    interface_->tableView(kTable).setDataSource(&contacts_, &review_);
    connectCommands();
    review_.setBookIsOpen(false);
    review_.awakeFromNib();
    contacts_.awakeFromNib();
    application_.setObserver(this);
}

MainWindow::~MainWindow()
{
    application_.setObserver(nullptr);
    interface_->window().setDelegate(nullptr);
    interface_->tableView(kTable).setDataSource(nullptr, nullptr);
    platform_.addressBook = nullptr;
    platform_.cardSource = nullptr;
}

void MainWindow::show()
{
    interface_->window().show();
}

void MainWindow::open(const std::filesystem::path& path)
{
    openAs(bookName(path), path);
}

void MainWindow::openDropped(const std::vector<std::filesystem::path>& paths)
{
    if (paths.size() > 1) {
        Settings::MsgBox("One address book is opened at a time. Drop a single file or folder.");
        return;
    }
    open(paths.front());
}

void MainWindow::openAs(std::string_view name, const std::filesystem::path& path)
{
    if (select(name, path) && isLaunched_) {
        contacts_.OnReload(nullptr);
    }
}

void MainWindow::openByDefault(std::string_view name, const std::filesystem::path& path)
{
    try {
        replaceBook(name, path);
        isDefaultBook_ = true;
    } catch (...) {
        explainNoBook(failureText(std::current_exception(), name));
    }
}

void MainWindow::chooseAtLaunch()
{
    choosesAtLaunch_ = true;
}

void MainWindow::explainNoBook(std::string_view reason)
{
    review_.setBookIsOpen(false, reason);
}

void MainWindow::offerSystemBooks(const std::filesystem::path& name, SystemBooks::List list)
{
    systemBooks_.offer(name, std::move(list));
}

void MainWindow::applicationDidFinishLaunching()
{
    isLaunched_ = true;
    delegate_.applicationDidFinishLaunching();
}

void MainWindow::applicationDidBecomeActive()
{
    // Closing the panel activates the window again.
    if (std::exchange(choosesAtLaunch_, false)) {
        review_.OnOpen(nullptr);
        return;
    }
    // Without a book there is nothing to load. Opening one starts the first load then. A dropped
    // book or the reload command may start it even before the first activation; a second load at
    // the same time would use the same people.
    if (book_.addressBook && !jobsHaveBegun_) {
        isUnaskedLoad_ = isDefaultBook_;
        delegate_.applicationDidBecomeActive();
    }
}

void MainWindow::jobsBegan(std::string_view name)
{
    jobsHaveBegun_ = true;
    systemBooks_.jobsBegan();
    undoDelete_.jobsBegan(name);
    review_.jobsBegan(name);
}

void MainWindow::jobFailed(std::string_view name, const std::exception_ptr& failure)
{
    closeProgressWindow();
    const auto text = failureText(failure, bookName_);
    const bool isUnasked = isUnaskedLoad_ && name == kThreadLoadContacts;
    if (!isUnasked) {
        showFailure(text);
    }
    ContactsParser::parser().reset();
    // A deletion has disabled the table, and only an enabled one asks for the number of rows.
    auto& table = interface_->tableView(kTable);
    table.setEnabled(true);
    table.reloadData();
    review_.jobFailed(name, isUnasked ? text : "");
    undoDelete_.jobFailed();
    if (name == kThreadDeleteCheckedContacts || name == kThreadUndoDelete) {
        contacts_.OnReload(nullptr);
    }
}

void MainWindow::jobsEnded()
{
    isUnaskedLoad_ = false;
    review_.jobsEnded();
    undoDelete_.jobsEnded();
    systemBooks_.jobsEnded();
    updateTitle();
}

void MainWindow::connectCommands()
{
    const auto connect = [this](std::string_view name, std::function<void()> run) {
        interface_->command(name).setHandler([run = std::move(run)](View* /*sender*/) { run(); });
    };
    connect("OnClose", [this] { interface_->window().close(); });
    connect("OnQuit", [this] { application_.terminate(this); });
    connect("OnCheckForUpdate", [this] { delegate_.OnCheckForUpdate(nullptr); });
    connect("OnHelp", [this] { guide_.open(); });
    connect("OnShortcuts", [this] { shortcuts_.showWindow(this); });
    connect("OnWebsite", [] { Settings::Website(); });
    connect("OnSupport", [] { Settings::Support(); });
    connect("OnAbout", [this] { showAbout(); });
}

bool MainWindow::openBook(OpenPanel::Kind kind)
{
    const auto path = Desktop::current().openPanel.runModal(kind, bookFolder_);
    return path && select(bookName(*path), *path);
}

bool MainWindow::select(std::string_view name, const std::filesystem::path& path)
{
    if (application_.isBusy()) {
        return false;
    }
    // Before the launch there is no open book to keep: the first load reports what is wrong with
    // the path, and a later one finds a book that has appeared there since.
    std::error_code error;
    if (isLaunched_ && !systemBooks_.contains(path) && !std::filesystem::exists(path, error) &&
        !error) {
        showFailure(quotedPath(path) + " does not exist.");
        return false;
    }
    if (!review_.mayLoseMarks()) {
        return false;
    }
    try {
        replaceBook(name, path);
    } catch (...) {
        showFailure(failureText(std::current_exception(), name));
        return false;
    }
    return true;
}

void MainWindow::replaceBook(std::string_view name, const std::filesystem::path& path)
{
    book_ = makeAddressBook_(path);
    platform_.addressBook = book_.addressBook.get();
    platform_.cardSource = book_.cardSource.get();
    bookName_ = name;
    bookFolder_ = systemBooks_.contains(path) ? "" : wholePath(path).parent_path();
    isDefaultBook_ = false;
    setTitle(name);
    review_.setBookIsOpen(true);
    undoDelete_.bookOpened(path, bookFolder_, book_.cardRestorer);
}

void MainWindow::setTitle(std::string_view book)
{
    interface_->window().setTitle(windowTitle(book, kName));
}

void MainWindow::updateTitle()
{
    if (!book_.addressBook) {
        return;
    }
    std::string names;
    for (const auto& name : book_.addressBook->notes().books) {
        names += (names.empty() ? "" : ", ") + windowText(name);
    }
    if (!names.empty()) {
        setTitle(names);
    }
}

void MainWindow::reloadAfter(const Restoration& result)
{
    // The load belongs to the running job, so nobody else announces it.
    review_.jobsBegan(kThreadLoadContacts);
    review_.restoreMarksBeforeDeletion();
    if (!result.failures.empty()) {
        review_.forgetMarksBeforeDeletions();
    }
    contacts_.OnReload(nullptr);
}

void MainWindow::showAbout() const
{
    const auto& platform = Platform::current();
    const auto version = platform.bundle.objectForInfoDictionaryKey("CFBundleVersion");
    platform.alert.runModal(
        {std::string(kName) + (version ? " " + *version : ""),
         "Finds and removes duplicated people in an address book.\n\nBuilt with " + libraries_ +
             ".",
         "OK", std::nullopt});
}

}  // namespace dunmora
