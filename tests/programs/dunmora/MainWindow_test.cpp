#include "base/JobNotifications.h"
#include "base/NotificationCenter.h"
#include "tests/programs/dunmora/MainWindowTest.h"
#include "ui/AppData.h"

#include <stdexcept>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;
using Paths = std::vector<std::filesystem::path>;

TEST_F(MainWindowTest, HasTheNameOfTheProgramWithoutABook)
{
    makeWindow();
    EXPECT_EQ(title(), "Dunmora");
    EXPECT_EQ(emptiness(), "No address book is open");
    EXPECT_FALSE(main_->fakeWindow.isVisible);

    window_->show();
    EXPECT_TRUE(main_->fakeWindow.isVisible);
}

TEST_F(MainWindowTest, NamesTheBookInItsTitle)
{
    makeWindow();

    window_->open(file_);
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    EXPECT_EQ(emptiness(), "Not searched yet");

    window_->open(folder_.path() / "");
    EXPECT_EQ(title(), folder_.path().filename().string() + " – Dunmora");

    window_->open(".");
    EXPECT_EQ(title(), std::filesystem::current_path().filename().string() + " – Dunmora");

    window_->open("/");
    EXPECT_EQ(title(), "/ – Dunmora");
}

TEST_F(MainWindowTest, ShowsTheGivenNameOfABookThatIsNotAFile)
{
    makeWindow();
    window_->openAs("Address Book", "desktop:");
    EXPECT_EQ(title(), "Address Book – Dunmora");

    window_->applicationDidFinishLaunching();
    window_->applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(opened_, Paths{"desktop:"});
    EXPECT_EQ(table().rows, 2U);
    EXPECT_TRUE(alerts().empty());
}

TEST_F(MainWindowTest, ReportsAnEmptyBookAndOffersToOpenAnother)
{
    book_ = FakeAddressBook();
    start("desktop:");

    EXPECT_EQ(emptiness(), "This address book is empty");
    EXPECT_FALSE(main_->button("btnEmptyOpen").isHidden);
    EXPECT_TRUE(main_->command("OnOpen").isEnabled);
}

TEST_F(MainWindowTest, ReadsTheBookOfTheCommandLineAtTheFirstActivation)
{
    makeWindow();
    window_->open(file_);
    window_->applicationDidFinishLaunching();
    EXPECT_TRUE(application_.threads.empty());

    window_->applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads, (Lines{"LoadContacts", "FindDuplicates"}));
    EXPECT_EQ(opened_, Paths{file_});
    EXPECT_EQ(table().rows, 2U);
    EXPECT_EQ(emptiness(), "");
    EXPECT_EQ(main_->textField("txtTotal").stringValue, "2 duplicates of 3");
    EXPECT_TRUE(main_->command("OnDelete").isEnabled);

    window_->applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads.size(), 2U);
}

TEST_F(MainWindowTest, OffersToOpenABookWhenThereIsNone)
{
    start(std::nullopt);

    EXPECT_TRUE(alerts().empty());
    EXPECT_TRUE(application_.threads.empty());
    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(emptiness(), "No address book is open");
    EXPECT_FALSE(main_->button("btnEmptyOpen").isHidden);
    EXPECT_TRUE(main_->command("OnOpen").isEnabled);
}

TEST_F(MainWindowTest, StartsTheFirstLoadOnceABookIsOpen)
{
    start(std::nullopt);
    desktop_.openPanel.choice = file_;

    main_->command("OnOpen").use();
    window_->applicationDidBecomeActive();
    application_.runUntilIdle();
    window_->applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads, (Lines{"LoadContacts", "FindDuplicates"}));
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, LetsTheUserChooseAFileOnceAtTheFirstActivation)
{
    desktop_.openPanel.choice = file_;
    makeWindow();
    window_->chooseAtLaunch();
    EXPECT_TRUE(desktop_.openPanel.kinds.empty());

    launch();
    window_->applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(desktop_.openPanel.kinds, std::vector{OpenPanel::Kind::File});
    EXPECT_EQ(opened_, Paths{file_});
    EXPECT_EQ(application_.threads, (Lines{"LoadContacts", "FindDuplicates"}));
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, HasNoBookWhenTheUserChoosesNoneAtTheFirstActivation)
{
    makeWindow();
    window_->chooseAtLaunch();

    launch();
    window_->applicationDidBecomeActive();

    EXPECT_EQ(desktop_.openPanel.kinds.size(), 1U);
    EXPECT_TRUE(alerts().empty());
    EXPECT_TRUE(application_.threads.empty());
    EXPECT_EQ(emptiness(), "No address book is open");
}

TEST_F(MainWindowTest, ExplainsHowToOpenABookWhenNoneCanBeReloaded)
{
    start(std::nullopt);

    main_->command("OnReload").use();
    application_.runUntilIdle();

    EXPECT_EQ(failures(),
              Lines{"No address book is open. Choose File > Open… to open a vCard file, "
                    "or File > Open Folder… to open a folder of them."});
    EXPECT_EQ(emptiness(), "No address book is open");
}

TEST_F(MainWindowTest, ShowsOnThePageWhyNoBookIsOpenedByDefault)
{
    makeWindow();

    window_->explainNoBook("This desktop has no address books.");
    launch();

    EXPECT_TRUE(alerts().empty());
    EXPECT_TRUE(application_.threads.empty());
    EXPECT_EQ(emptiness(), "No address book is open");
    EXPECT_TRUE(hint().starts_with("This desktop has no address books.\nOpen a vCard file"));
    EXPECT_EQ(title(), "Dunmora");

    // The alert says only that no book is open.
    main_->command("OnReload").use();
    application_.runUntilIdle();
    EXPECT_EQ(failures().size(), 1U);
    EXPECT_TRUE(hint().starts_with("This desktop has no address books.\nOpen a vCard file"));
}

TEST_F(MainWindowTest, ReadsTheDefaultBookAtTheFirstActivation)
{
    makeWindow();
    window_->openByDefault("Address Book", "desktop:");
    EXPECT_EQ(title(), "Address Book – Dunmora");
    EXPECT_TRUE(application_.threads.empty());

    launch();

    EXPECT_EQ(opened_, Paths{"desktop:"});
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, ShowsOnThePageWhyTheDefaultBookCannotBeOpened)
{
    makeWindow();
    onMakeAddressBook = [] { throw PlatformError("There is no such service."); };

    window_->openByDefault("Address Book", "desktop:");
    launch();

    EXPECT_TRUE(alerts().empty());
    EXPECT_TRUE(application_.threads.empty());
    EXPECT_EQ(emptiness(), "No address book is open");
    EXPECT_TRUE(hint().starts_with("There is no such service.\n"));
    EXPECT_EQ(title(), "Dunmora");
}

TEST_F(MainWindowTest, ShowsOnThePageWhyTheDefaultBookCannotBeRead)
{
    makeWindow();
    book_.onRead = [] { throw PlatformError("The service has gone."); };

    window_->openByDefault("Address Book", "desktop:");
    launch();

    EXPECT_TRUE(alerts().empty());
    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(emptiness(), "The address book could not be read");
    EXPECT_TRUE(hint().starts_with("The service has gone.\nChoose Reload"));
    EXPECT_FALSE(main_->button("btnEmptyOpen").isHidden);

    // The user asks for the next load.
    main_->command("OnReload").use();
    application_.runUntilIdle();
    EXPECT_EQ(failures(), Lines{"The service has gone."});
    EXPECT_TRUE(hint().starts_with("Choose Reload"));
}

TEST_F(MainWindowTest, ReportsABookThatReplacedTheDefaultOneBeforeTheFirstActivation)
{
    makeWindow();
    book_.onRead = [] { throw PlatformError("It cannot be read."); };
    window_->openByDefault("Address Book", "desktop:");

    window_->open(file_);
    launch();

    EXPECT_EQ(failures(), Lines{"It cannot be read."});
}

TEST_F(MainWindowTest, ReportsASearchThatFailsInTheDefaultBook)
{
    makeWindow();
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(this, kMsgShowMessage, [](const Notification& notification) {
        if (notification.text() == "Sorting contacts...") {
            throw PlatformError("It cannot be sorted.");
        }
    });
    window_->openByDefault("Address Book", "desktop:");
    launch();
    center.removeObserver(this, kMsgShowMessage);

    EXPECT_EQ(failures(), Lines{"It cannot be sorted."});
}

TEST_F(MainWindowTest, ReadsADroppedBookAtOnce)
{
    start(std::nullopt);

    window_->open(file_);
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    application_.runUntilIdle();

    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, AsksBeforeAnotherBookReplacesChangedMarks)
{
    start(file_);
    table().dataSource->setObjectValue(true, "check", 0);
    table().delegate->rowsEdited(std::vector<std::size_t>{0});
    int answer = Alert::kAlternateButton;
    platform_.alert.onRunModal = [&](const AlertContent& /*content*/) { return answer; };

    window_->open(file_);
    EXPECT_EQ(alerts(), std::vector<std::string>{"Open another address book?"});
    EXPECT_EQ(opened_.size(), 1U);

    answer = Alert::kDefaultButton;
    window_->open(file_);
    EXPECT_EQ(opened_.size(), 2U);
    application_.runUntilIdle();
    EXPECT_NE(table().dataSource->objectValue("check", 0), CellValue(true));

    window_->open(file_);
    EXPECT_EQ(alerts().size(), 2U) << "no mark is changed";
}

TEST_F(MainWindowTest, ReadsTheBookThatWasOpenedLast)
{
    FakeAddressBook other({person("zoe-1", "Zoe"), person("zoe-2", "Zoe"), person("zoe-3", "Zoe")});
    start(file_);

    bookToOpen_ = &other;
    window_->open(folder_.path());
    application_.runUntilIdle();

    EXPECT_EQ(table().rows, 3U);
}

TEST_F(MainWindowTest, LoadsABookDroppedBeforeTheFirstActivationOnce)
{
    makeWindow();
    window_->applicationDidFinishLaunching();
    window_->open(file_);

    window_->applicationDidBecomeActive();
    application_.runUntilIdle();
    window_->applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads, (Lines{"LoadContacts", "FindDuplicates"}));
}

TEST_F(MainWindowTest, RefusesADropWhileAJobRuns)
{
    start(file_);
    main_->command("OnReload").use();

    window_->open(folder_.path());
    application_.runUntilIdle();

    EXPECT_EQ(opened_, Paths{file_});
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    EXPECT_TRUE(alerts().empty());
}

TEST_F(MainWindowTest, KeepsTheOpenBookWhenTheNewOneDoesNotExist)
{
    start(file_);
    const auto jobs = application_.threads.size();

    window_->open(folder_.path() / "gone.vcf");
    application_.runUntilIdle();

    EXPECT_EQ(failures(),
              Lines{"“" + (folder_.path() / "gone.vcf").string() + "” does not exist."});
    EXPECT_EQ(opened_, Paths{file_});
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    EXPECT_EQ(application_.threads.size(), jobs);
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, ReadsABookWhoseExistenceCannotBeChecked)
{
    start(file_);
    const std::filesystem::path tooLong = "/" + std::string(5000, 'x');
    book_.onRead = [] { throw PlatformError("The name is too long."); };

    window_->open(tooLong);
    application_.runUntilIdle();

    EXPECT_EQ(opened_, (Paths{file_, tooLong}));
    EXPECT_EQ(alerts(), Lines{"The name is too long."});
    EXPECT_EQ(emptiness(), "The address book could not be read");
    EXPECT_TRUE(main_->command("OnOpen").isEnabled);
}

TEST_F(MainWindowTest, KeepsTheOpenBookWhenTheNewOneCannotBeCreated)
{
    start(file_);
    onMakeAddressBook = [] { throw PlatformError("There is no such service."); };

    window_->open(folder_.path());
    application_.runUntilIdle();

    EXPECT_EQ(failures(), Lines{"There is no such service."});
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    main_->command("OnReload").use();
    application_.runUntilIdle();
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, ReportsAMissingBookOfTheCommandLineWhenItIsRead)
{
    const auto gone = folder_.path() / "gone.vcf";
    book_.onRead = [] { throw PlatformError("“gone.vcf” does not exist."); };

    start(gone);

    EXPECT_EQ(opened_, Paths{gone});
    EXPECT_EQ(alerts(), Lines{"“gone.vcf” does not exist."});
    EXPECT_EQ(emptiness(), "The address book could not be read");

    // It may exist the next time.
    book_.onRead = [] {};
    main_->command("OnReload").use();
    application_.runUntilIdle();
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, OpensTheBookThatTheUserChooses)
{
    start(std::nullopt);

    main_->command("OnOpen").use();
    application_.runUntilIdle();
    EXPECT_TRUE(opened_.empty());
    EXPECT_TRUE(application_.threads.empty());

    desktop_.openPanel.choice = file_;
    main_->command("OnOpen").use();
    application_.runUntilIdle();
    EXPECT_EQ(opened_, Paths{file_});
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, OpensTheFolderThatTheUserChooses)
{
    start(file_);

    desktop_.openPanel.choice = folder_.path();
    main_->command("OnOpenFolder").use();
    application_.runUntilIdle();

    EXPECT_EQ(desktop_.openPanel.kinds, std::vector{OpenPanel::Kind::Folder});
    EXPECT_EQ(opened_, (Paths{file_, folder_.path()}));
    EXPECT_EQ(table().rows, 2U);
}

TEST_F(MainWindowTest, LetsTheUserChooseBesideTheOpenBook)
{
    const auto cards = folder_.path() / "cards";
    std::filesystem::create_directory(cards);
    start(std::nullopt);
    auto& panel = desktop_.openPanel;
    const auto open = [&](const std::filesystem::path& path) {
        panel.choice = path;
        main_->command("OnOpen").use();
        application_.runUntilIdle();
    };

    open(file_);
    open(cards / "");
    open(folder_.path() / "missing" / "gone.vcf");
    open(std::filesystem::relative(file_));
    open(file_);

    const auto folder = folder_.path();
    EXPECT_EQ(panel.folders, (Paths{"", folder, folder, folder, folder}));
    EXPECT_EQ(panel.kinds, std::vector(5, OpenPanel::Kind::File));
}

TEST_F(MainWindowTest, LetsThePanelDecideWhereToStartWithABookOfTheSystem)
{
    makeWindow();
    window_->offerSystemBooks("system:", {});
    window_->open("system:ann");
    window_->applicationDidFinishLaunching();
    window_->applicationDidBecomeActive();
    application_.runUntilIdle();

    main_->command("OnOpen").use();

    EXPECT_EQ(desktop_.openPanel.folders, Paths{""});
}

TEST_F(MainWindowTest, OpensTheBookThatIsDroppedOnIt)
{
    const auto other = folder_.path() / "other.vcf";
    write(other, "");
    start(file_);

    window_->openDropped({other});
    application_.runUntilIdle();

    EXPECT_EQ(opened_, (Paths{file_, other}));
    EXPECT_EQ(title(), "other.vcf – Dunmora");
    EXPECT_TRUE(alerts().empty());
}

TEST_F(MainWindowTest, OpensNoneOfSeveralBooksDroppedTogether)
{
    const auto other = folder_.path() / "other.vcf";
    write(other, "");
    start(file_);

    window_->openDropped({other, folder_.path()});
    application_.runUntilIdle();

    EXPECT_EQ(opened_, Paths{file_});
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    EXPECT_EQ(table().rows, 2U);
    EXPECT_EQ(alerts(),
              Lines{"One address book is opened at a time. Drop a single file or folder."});
}

TEST_F(MainWindowTest, OpensTheAddressBookOfTheSystem)
{
    makeWindow();
    window_->offerSystemBooks("system:", {});
    window_->open(file_);
    window_->applicationDidFinishLaunching();
    window_->applicationDidBecomeActive();
    EXPECT_FALSE(main_->command("OnOpenSystemBook").isEnabled) << "while a job runs";
    application_.runUntilIdle();

    main_->command("OnOpenSystemBook").use();
    application_.runUntilIdle();

    EXPECT_EQ(opened_, (Paths{file_, "system:"}));
    EXPECT_EQ(title(), "Address Book – Dunmora");
    EXPECT_EQ(table().rows, 2U);
    EXPECT_TRUE(alerts().empty());
}

TEST_F(MainWindowTest, NamesTheBooksOfTheSystemThatWereRead)
{
    book_.readingNotes.books = {"Family", "Work\n& Co."};
    makeWindow();
    window_->offerSystemBooks("system:", {});
    window_->open(file_);
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
    window_->applicationDidFinishLaunching();
    window_->applicationDidBecomeActive();
    application_.runUntilIdle();
    EXPECT_EQ(title(), "Family, Work & Co. – Dunmora");

    book_.readingNotes.books = {};
    window_->open(file_);
    application_.runUntilIdle();
    EXPECT_EQ(title(), "address-book.vcf – Dunmora");
}

TEST_F(MainWindowTest, EndsTheProgramWhenItCloses)
{
    makeWindow();
    window_->show();

    main_->command("OnClose").use();

    EXPECT_FALSE(main_->fakeWindow.isVisible);
    EXPECT_EQ(application_.terminations.size(), 1U);
}

TEST_F(MainWindowTest, EndsTheProgramDuringAJob)
{
    start(file_);
    main_->command("OnReload").use();

    main_->command("OnQuit").use();

    EXPECT_EQ(application_.terminations.size(), 1U);
    application_.runUntilIdle();
}

TEST_F(MainWindowTest, OpensTheWebsiteAndTheSupportAddress)
{
    makeWindow();

    main_->command("OnWebsite").use();
    main_->command("OnSupport").use();

    ASSERT_EQ(platform_.workspace.opened.size(), 2U);
    EXPECT_TRUE(platform_.workspace.opened[0].starts_with("http"));
    EXPECT_TRUE(platform_.workspace.opened[1].starts_with("mailto:"));
}

TEST_F(MainWindowTest, OpensTheUserGuide)
{
    makeWindow();
    const auto guide = folder_.path() / "doc/guide";
    std::filesystem::create_directories(guide);
    write(guide / "index.html", "");

    main_->command("OnHelp").use();

    EXPECT_EQ(platform_.workspace.openedLocalPages,
              std::vector<std::filesystem::path>{guide / "index.html"});
}

TEST_F(MainWindowTest, ListsItsShortcutsFromTheMenu)
{
    makeWindow();
    main_->fakeShortcuts = {{"File", "Reload", "F5"}};

    main_->command("OnShortcuts").use();

    EXPECT_TRUE(loader_.last->fakeWindow.isVisible);
    EXPECT_EQ(loader_.last->detailsView("lstShortcuts").lines.size(), 2U);
}

TEST_F(MainWindowTest, ChecksForUpdatesAtLaunchAndFromTheMenu)
{
    makeWindow();
    window_->applicationDidFinishLaunching();
    EXPECT_EQ(desktop_.connections.opened.size(), 1U);
    EXPECT_FALSE(updateWindow_->fakeWindow.isVisible);

    main_->command("OnCheckForUpdate").use();

    EXPECT_EQ(desktop_.connections.opened.size(), 2U);
    EXPECT_TRUE(updateWindow_->fakeWindow.isVisible);
}

TEST_F(MainWindowTest, ShowsTheVersionAndTheLibraries)
{
    makeWindow();

    main_->command("OnAbout").use();

    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    const auto& about = platform_.alert.shown.front();
    EXPECT_EQ(about.messageText, "Dunmora 0.1");
    EXPECT_EQ(about.informativeText, "Finds and removes duplicated people in an address book.\n\n"
                                     "Built with Toolkit 1.0 and Hash 2.0.");
    EXPECT_EQ(about.defaultButton, "OK");
    EXPECT_EQ(about.alternateButton, std::nullopt);
    EXPECT_EQ(about.style, AlertStyle::Notice);
}

TEST_F(MainWindowTest, FailsWithAMessageWhenItsInterfaceCannotBeLoaded)
{
    loader_.missing.insert("MainWindow");

    try {
        makeWindow();
        FAIL() << "a window without an interface";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "The main window cannot be loaded. Reinstall Dunmora.");
    }
}

}  // namespace
}  // namespace dunmora::test
