#pragma once

#include "platform/PlatformError.h"
#include "programs/dunmora/MainWindow.h"
#include "programs/dunmora/SelectedAddressBook.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/LentAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {

/// The whole program with windows but for its toolkit and its adapters, on real threads. Every path
/// leads to one address book in memory: Ann twice, and Ben.
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

    static FakePerson person(const std::string& uid, const std::string& firstName)
    {
        FakePerson made;
        made.uid = uid;
        made.firstName = firstName;
        return made;
    }

    void makeWindow()
    {
        window_.emplace(
            supervised_, selected_,
            [this](const std::filesystem::path& path) -> std::unique_ptr<AddressBook> {
                opened_.push_back(path);
                onMakeAddressBook();
                return std::make_unique<LentAddressBook>(book_);
            },
            "Toolkit 1.0 and Hash 2.0");
        main_ = loader_.last;
    }

    /// What the program does on the machine, up to the end of the first search.
    void start(const std::optional<std::filesystem::path>& book)
    {
        makeWindow();
        if (book) {
            window_->open(*book);
        }
        window_->applicationDidFinishLaunching();
        window_->applicationDidBecomeActive();
        application_.runUntilIdle();
    }

    FakeTableView& table() { return main_->tableView("tableContacts"); }
    std::string title() const { return main_->fakeWindow.title; }
    /// The title over the empty table, or nothing while there are rows.
    std::string emptiness()
    {
        return main_->view("vwEmpty").isHidden ? "" : main_->textField("txtEmptyTitle").stringValue;
    }

    /// The first lines of the alerts so far.
    std::vector<std::string> alerts() const
    {
        std::vector<std::string> texts;
        for (const auto& alert : platform_.alert.shown) {
            texts.push_back(alert.messageText);
        }
        return texts;
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_.path() / "address-book.vcf";
    FakeAddressBook book_{{person("ann-1", "Ann"), person("ben", "Ben"), person("ann-2", "Ann")}};
    std::string dialogAnswer_ = "OnOkay";
    /// The paths of the address books that were made.
    std::vector<std::filesystem::path> opened_;
    std::function<void()> onMakeAddressBook = [] {};

    SelectedAddressBook selected_;
    Platform platformWithChoice_{selected_, platform_.userDefaults, platform_.alert,
                                 platform_.workspace, platform_.bundle};
    SupervisedApplication supervised_{application_};
    Desktop supervisedDesktop_{supervised_, loader_, desktop_.openPanel, desktop_.connections};
    std::optional<MainWindow> window_;
    FakeInterface* main_ = nullptr;
};

}  // namespace dunmora::test
