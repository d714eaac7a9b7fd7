#pragma once

#include "platform/PlatformError.h"
#include "programs/dunmora/MainWindow.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/People.h"
#include "tests/fakes/TemporaryFolder.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {

/// The whole program with windows, without its toolkit and adapters, on real threads. By default
/// every path opens the same address book in memory: Ann twice, and Ben.
class MainWindowTest : public DesktopTest {
protected:
    MainWindowTest()
    {
        Platform::install(platformWithChoice_);
        Desktop::install(supervisedDesktop_);
        write(file_, "");
        application_.onRunModal = [this](Window& /*window*/) {
            loader_.last->command(dialogAnswer_).use();
        };
    }

    void TearDown() override
    {
        DesktopTest::TearDown();
        window_.reset();
    }

    void makeWindow()
    {
        window_.emplace(
            supervised_, platformWithChoice_,
            [this](const std::filesystem::path& path) {
                opened_.push_back(path);
                onMakeAddressBook();
                return lent(*bookToOpen_);
            },
            "Toolkit 1.0 and Hash 2.0", UserGuide(folder_.path() / "bin", "../doc/guide"));
        main_ = loader_.last;
    }

    /// Launches the program and runs it to the end of the first search.
    void start(const std::optional<std::filesystem::path>& book)
    {
        makeWindow();
        if (book) {
            window_->open(*book);
        }
        launch();
    }

    void launch()
    {
        window_->applicationDidFinishLaunching();
        window_->applicationDidBecomeActive();
        application_.runUntilIdle();
    }

    FakeTableView& table() { return main_->tableView("tableContacts"); }
    std::string title() const { return main_->fakeWindow.title; }
    /// The title of the empty view, or an empty text while the table has rows.
    std::string emptiness()
    {
        return main_->view("vwEmpty").isHidden ? "" : main_->textField("txtEmptyTitle").stringValue;
    }

    std::string hint() { return main_->textField("txtEmptyHint").stringValue; }

    /// The messages of the alerts so far.
    std::vector<std::string> alerts() const
    {
        std::vector<std::string> texts;
        for (const auto& alert : platform_.alert.shown) {
            texts.push_back(alert.messageText);
        }
        return texts;
    }

    /// The messages of the alerts so far that report a failure.
    std::vector<std::string> failures() const
    {
        std::vector<std::string> texts;
        for (const auto& alert : platform_.alert.shown) {
            if (alert.style == AlertStyle::Failure) {
                texts.push_back(alert.messageText);
            }
        }
        return texts;
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_.path() / "address-book.vcf";
    FakeAddressBook book_{{person("ann-1", "Ann"), person("ben", "Ben"), person("ann-2", "Ann")}};
    FakeAddressBook* bookToOpen_ = &book_;
    std::string dialogAnswer_ = "OnOkay";
    /// The paths of the address books created so far.
    std::vector<std::filesystem::path> opened_;
    std::function<void()> onMakeAddressBook = [] {};

    Platform platformWithChoice_{nullptr, platform_.userDefaults, platform_.alert,
                                 platform_.workspace, platform_.bundle};
    SupervisedApplication supervised_{application_};
    Desktop supervisedDesktop_{supervised_,          loader_,
                               desktop_.openPanel,   desktop_.connections,
                               desktop_.textFolding, desktop_.savePanel,
                               desktop_.numberFormat};
    std::optional<MainWindow> window_;
    FakeInterface* main_ = nullptr;
};

}  // namespace dunmora::test
