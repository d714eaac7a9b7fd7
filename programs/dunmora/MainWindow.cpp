#include "programs/dunmora/MainWindow.h"

#include "base/Settings.h"
#include "platform/AddressBook.h"
#include "platform/Alert.h"
#include "platform/Bundle.h"
#include "platform/Desktop.h"
#include "platform/OpenPanel.h"
#include "platform/Platform.h"
#include "platform/TableView.h"
#include "platform/Window.h"
#include "programs/dunmora/FailureText.h"
#include "programs/dunmora/SelectedAddressBook.h"
#include "programs/dunmora/SupervisedApplication.h"

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
        throw std::runtime_error(
            "The main window cannot be loaded. Dunmora is not installed as it should be.");
    }
    return interface;
}

/// What a user calls the address book: the last part of its path, also of one that ends in a
/// separator or is relative.
std::string bookName(const std::filesystem::path& path)
{
    std::error_code error;
    auto whole = std::filesystem::absolute(path, error).lexically_normal();
    if (error) {
        whole = path;
    }
    const auto name = (whole.has_filename() ? whole : whole.parent_path()).filename();
    return name.empty() ? whole.string() : name.string();
}

}  // namespace

MainWindow::MainWindow(SupervisedApplication& application, SelectedAddressBook& addressBook,
                       MakeAddressBook makeAddressBook, std::string libraries)
    : application_(application),
      addressBook_(addressBook),
      makeAddressBook_(std::move(makeAddressBook)),
      libraries_(std::move(libraries)),
      interface_(mainInterface()),
      contacts_(*interface_, [this] { delegate_.LoadContacts(); }),
      review_(*interface_, contacts_, [this] { return openBook(); }),
      failureHandler_(interface_->tableView(kTable), contacts_, review_)
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
}

void MainWindow::show()
{
    interface_->window().show();
}

void MainWindow::open(const std::filesystem::path& path)
{
    openAs(bookName(path), path);
}

void MainWindow::openAs(std::string_view name, const std::filesystem::path& path)
{
    if (select(name, path) && isLaunched_) {
        contacts_.OnReload(nullptr);
    }
}

void MainWindow::applicationDidFinishLaunching()
{
    isLaunched_ = true;
    delegate_.applicationDidFinishLaunching();
}

void MainWindow::applicationDidBecomeActive()
{
    // A book dropped on the window, or the reload command, may come before the window is the active
    // one. What that has begun is the first load: a second one beside it would use the same people.
    if (!jobsHaveBegun_) {
        delegate_.applicationDidBecomeActive();
    }
}

void MainWindow::jobsBegan(std::string_view name)
{
    jobsHaveBegun_ = true;
    review_.jobsBegan(name);
}

void MainWindow::jobFailed(std::string_view name, const std::string& text)
{
    failureHandler_.jobFailed(name, text);
}

void MainWindow::jobsEnded()
{
    review_.jobsEnded();
}

void MainWindow::connectCommands()
{
    const auto connect = [this](std::string_view name, std::function<void()> run) {
        interface_->command(name).setHandler([run = std::move(run)](View* /*sender*/) { run(); });
    };
    connect("OnClose", [this] { interface_->window().close(); });
    connect("OnQuit", [this] { application_.terminate(this); });
    connect("OnCheckForUpdate", [this] { delegate_.OnCheckForUpdate(nullptr); });
    connect("OnWebsite", [] { Settings::Website(); });
    connect("OnSupport", [] { Settings::Support(); });
    connect("OnAbout", [this] { showAbout(); });
}

bool MainWindow::openBook()
{
    const auto path = Desktop::current().openPanel.runModal();
    return path && select(bookName(*path), *path);
}

bool MainWindow::select(std::string_view name, const std::filesystem::path& path)
{
    if (application_.isBusy()) {
        return false;
    }
    // Before the launch there is no open book to keep: that load tells what is wrong with the path,
    // and a later one finds what has come under it meanwhile.
    std::error_code error;
    if (isLaunched_ && !std::filesystem::exists(path, error) && !error) {
        Settings::MsgBox("“" + path.string() + "” does not exist.");
        return false;
    }
    try {
        addressBook_.select(makeAddressBook_(path));
    } catch (...) {
        Settings::MsgBox(failureText());
        return false;
    }
    interface_->window().setTitle(std::string(name) + " – " + std::string(kName));
    review_.setBookIsOpen(true);
    return true;
}

void MainWindow::showAbout() const
{
    const auto& platform = Platform::current();
    const auto version = platform.bundle.objectForInfoDictionaryKey("CFBundleVersion");
    platform.alert.runModal(
        {std::string(kName) + (version ? " " + *version : ""),
         "Finds and removes duplicated people in an address book.\n\nIt stands on " + libraries_ +
             ".",
         "OK", std::nullopt});
}

}  // namespace dunmora
