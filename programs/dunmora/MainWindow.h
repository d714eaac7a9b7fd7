#pragma once

#include "app/DunmoraAppDelegate.h"
#include "platform/Application.h"
#include "platform/InterfaceLoader.h"
#include "platform/OpenPanel.h"
#include "platform/OpenedBook.h"
#include "programs/dunmora/JobObserver.h"
#include "programs/dunmora/SystemBooks.h"
#include "programs/dunmora/UndoDelete.h"
#include "programs/dunmora/UserGuide.h"
#include "ui/ContactsController.h"
#include "ui/ReviewController.h"
#include "ui/ShortcutsController.h"
#include "update/UpdateMenu.h"

#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class SupervisedApplication;
struct Platform;

/// The main window: creates and connects the controllers, assigns each command its handler, and
/// opens address books.
///
/// Thread: the main thread, after the platform and the desktop have been installed.
class MainWindow final : public ApplicationDelegate, public JobObserver {
public:
    /// Creates the address book at a path; it need not read anything yet.
    /// Errors: PlatformError when no address book can be at this path.
    using MakeAddressBook = std::function<OpenedBook(const std::filesystem::path& path)>;

    /// `platform` is the one installed; the window sets its open address book. `libraries` lists
    /// the libraries that the program is built with, for the user.
    /// Errors: std::runtime_error when the window's interface cannot be loaded.
    MainWindow(SupervisedApplication& application, Platform& platform,
               MakeAddressBook makeAddressBook, std::string libraries, UserGuide guide);
    /// No job may be running.
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /// Shows the window.
    void show();

    /// Opens the address book of the command line. It is read at once or, before the launch, at the
    /// first activation. A path that does not exist or cannot be an
    /// address book is reported to the user, and the open book stays open. A book that cannot be
    /// read becomes the open book, and loading it reports the error. Does nothing while a job runs.
    void open(const std::filesystem::path& path);

    /// Opens the address book dropped on the window. If several were dropped together, opens none
    /// and shows a message. `paths` is not empty.
    void openDropped(const std::vector<std::filesystem::path>& paths);

    /// Like `open`, with a name for the title instead of the last component of the path.
    void openAs(std::string_view name, const std::filesystem::path& path);

    /// Opens this book at the first activation, because the user has named none. If it cannot be
    /// opened or read then, the page in place of the table says why, without an alert: the user has
    /// not asked for it. Call it before the launch.
    void openByDefault(std::string_view name, const std::filesystem::path& path);

    /// Lets the user choose a vCard file at the first activation. Call it before the launch.
    void chooseAtLaunch();

    /// Shows on that page why no book is opened by default. Call it before the launch.
    void explainNoBook(std::string_view reason);

    /// Like `SystemBooks::offer`.
    void offerSystemBooks(const std::filesystem::path& name, SystemBooks::List list);

    void applicationDidFinishLaunching() override;
    void applicationDidBecomeActive() override;

    void jobsBegan(std::string_view name) override;
    /// Closes the progress window, shows the message, then empties the table and makes the program
    /// usable again. A load that nobody has asked for shows its message on the page instead. After
    /// a failed deletion it reloads everything, because the engine has already forgotten people who
    /// are still in the address book, and after a failed restoration, because nobody knows what the
    /// book contains.
    void jobFailed(std::string_view name, const std::exception_ptr& failure) override;
    void jobsEnded() override;

private:
    void connectCommands();
    /// Lets the user choose a book. Returns whether it has been opened.
    bool openBook(OpenPanel::Kind kind);
    bool select(std::string_view name, const std::filesystem::path& path);
    /// Errors: what creating the address book throws; the open book is then unchanged.
    void replaceBook(std::string_view name, const std::filesystem::path& path);
    void reloadAfter(const Restoration& result);
    void setTitle(std::string_view book);
    /// Names the books that were read, if the open one consists of books with names.
    void updateTitle();
    void showAbout() const;

    SupervisedApplication& application_;
    Platform& platform_;
    OpenedBook book_;
    std::string bookName_;
    // The folder that contains the open book; empty for a book of the system.
    std::filesystem::path bookFolder_;
    MakeAddressBook makeAddressBook_;
    std::string libraries_;
    UserGuide guide_;
    bool isLaunched_ = false;
    bool jobsHaveBegun_ = false;
    bool choosesAtLaunch_ = false;
    /// Whether the program has chosen the open book by itself.
    bool isDefaultBook_ = false;
    /// Whether the running load is the one that such a book begins with.
    bool isUnaskedLoad_ = false;

    // Outlives the controllers, which use its outlets.
    std::unique_ptr<Interface> interface_;
    DunmoraAppDelegate delegate_;
    ContactsController contacts_;
    ReviewController review_;
    UndoDelete undoDelete_;
    SystemBooks systemBooks_;
    ShortcutsController shortcuts_;
    UpdateMenu updateMenu_;
};

}  // namespace dunmora
