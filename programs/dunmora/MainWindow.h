#pragma once

#include "app/DunmoraAppDelegate.h"
#include "platform/Application.h"
#include "platform/InterfaceLoader.h"
#include "programs/dunmora/JobFailureHandler.h"
#include "programs/dunmora/JobObserver.h"
#include "ui/ContactsController.h"
#include "ui/ReviewController.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace dunmora {

class AddressBook;
class SelectedAddressBook;
class SupervisedApplication;

/// The main window and everyone behind it: puts the controllers together, gives each command to
/// whoever carries it out, and opens address books.
///
/// Thread: the main thread, after the platform and the desktop have been installed.
class MainWindow final : public ApplicationDelegate, public JobObserver {
public:
    /// Makes the address book that stands under a path; it need not read anything yet.
    /// Errors: PlatformError when there can be no such address book.
    using MakeAddressBook =
        std::function<std::unique_ptr<AddressBook>(const std::filesystem::path& path)>;

    /// `libraries` is what the program stands on, as a list in words, for the user.
    /// Errors: std::runtime_error when the window's interface cannot be loaded.
    MainWindow(SupervisedApplication& application, SelectedAddressBook& addressBook,
               MakeAddressBook makeAddressBook, std::string libraries);
    /// No job may run.
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /// Puts the window on the screen.
    void show();

    /// Opens the address book of the command line, or one that was dropped on the window. Once the
    /// application has been launched it is read at once; before, by the first activation. What is
    /// not there or can be no address book is told to the user and leaves the open book alone; what
    /// is there but cannot be read is told by its reading and is the open book then. While a job
    /// runs nothing happens.
    void open(const std::filesystem::path& path);

    /// As `open`, for a path that is no file's and would mean little to the user as a title.
    void openAs(std::string_view name, const std::filesystem::path& path);

    void applicationDidFinishLaunching() override;
    void applicationDidBecomeActive() override;

    void jobsBegan(std::string_view name) override;
    void jobFailed(std::string_view name, const std::string& text) override;
    void jobsEnded() override;

private:
    void connectCommands();
    /// Lets the user choose a book. Returns whether it is the open one now.
    bool openBook();
    bool select(std::string_view name, const std::filesystem::path& path);
    void showAbout() const;

    SupervisedApplication& application_;
    SelectedAddressBook& addressBook_;
    MakeAddressBook makeAddressBook_;
    std::string libraries_;
    bool isLaunched_ = false;
    bool jobsHaveBegun_ = false;

    // Outlives the controllers, which hold its outlets.
    std::unique_ptr<Interface> interface_;
    DunmoraAppDelegate delegate_;
    ContactsController contacts_;
    ReviewController review_;
    JobFailureHandler failureHandler_;
};

}  // namespace dunmora
