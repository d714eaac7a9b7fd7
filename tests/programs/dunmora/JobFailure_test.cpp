#include "base/JobNotifications.h"
#include "base/NotificationCenter.h"
#include "engine/ContactsParser.h"
#include "tests/programs/dunmora/MainWindowTest.h"
#include "ui/AppData.h"

#include <algorithm>
#include <new>
#include <stdexcept>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;

class JobFailureTest : public MainWindowTest {
protected:
    JobFailureTest()
    {
        loader_.onLoad = [this](FakeInterface& interface) { progress_ = &interface; };
        platform_.alert.onRunModal = [this](const AlertContent& content) {
            if (!content.alternateButton) {
                const bool isOpen = AppData::app().progress() != nullptr;
                progressWasVisible_.push_back(isOpen && progress_->fakeWindow.isVisible);
                wasBusy_.push_back(supervised_.isBusy());
                commandsWereEnabled_.push_back(main_->command("OnReload").isEnabled);
            }
            return Alert::kDefaultButton;
        };
    }

    /// Expects a state in which the user can continue.
    void expectIdle()
    {
        EXPECT_FALSE(supervised_.isBusy());
        EXPECT_EQ(AppData::app().progress(), nullptr);
        EXPECT_TRUE(main_->command("OnReload").isEnabled);
        EXPECT_TRUE(main_->command("OnOpen").isEnabled);
        EXPECT_TRUE(table().isEnabled);
        EXPECT_TRUE(application_.failures.empty());
    }

    void expectTheBookCanBeReadAgain()
    {
        main_->command("OnReload").use();
        application_.runUntilIdle();
        EXPECT_EQ(table().rows, 2U);
        EXPECT_EQ(emptiness(), "");
        EXPECT_TRUE(main_->command("OnDelete").isEnabled);
    }

    /// The interface loaded last: the progress window while a failure is reported.
    FakeInterface* progress_ = nullptr;
    // Recorded at each alert with one button.
    std::vector<bool> progressWasVisible_;
    std::vector<bool> wasBusy_;
    std::vector<bool> commandsWereEnabled_;
};

TEST_F(JobFailureTest, OfALoadIsReportedOnceTheProgressWindowHasClosed)
{
    start(file_);
    book_.onRead = [] { throw PlatformError("“address-book.vcf” cannot be read."); };

    main_->command("OnReload").use();
    application_.runUntilIdle();

    EXPECT_EQ(failures(), Lines{"“address-book.vcf” cannot be read."});
    EXPECT_EQ(platform_.alert.shown.front().defaultButton, "OK");
    EXPECT_EQ(progressWasVisible_, std::vector{false});
    EXPECT_EQ(wasBusy_, std::vector{true});
    EXPECT_EQ(commandsWereEnabled_, std::vector{false});
}

TEST_F(JobFailureTest, OfALoadLeavesTheProgramUsable)
{
    start(file_);
    book_.onRead = [] { throw PlatformError("“address-book.vcf” cannot be read."); };

    main_->command("OnReload").use();
    application_.runUntilIdle();

    expectIdle();
    EXPECT_EQ(table().rows, 0U);
    EXPECT_EQ(emptiness(), "The address book could not be read");
    EXPECT_FALSE(main_->command("OnDelete").isEnabled);
    const auto calls = log_.calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "ProgressWindow close"), 3);
    book_.onRead = [] {};
    expectTheBookCanBeReadAgain();
}

TEST_F(JobFailureTest, OfTheFirstLoadIsReportedLikeAnyOther)
{
    book_.onRead = [] { throw PlatformError("“address-book.vcf” cannot be read."); };

    start(file_);

    EXPECT_EQ(alerts(), Lines{"“address-book.vcf” cannot be read."});
    expectIdle();
    book_.onRead = [] {};
    expectTheBookCanBeReadAgain();
}

TEST_F(JobFailureTest, NamesTheBookForWhichThereIsNotEnoughMemory)
{
    const auto noMemory = [] { throw std::bad_alloc(); };
    const auto message = "There is not enough memory for “address-book.vcf”. Close other programs "
                         "and try again.";
    book_.onRead = noMemory;

    start(file_);

    EXPECT_EQ(alerts(), Lines{message});
    book_.onRead = [] {};
    expectTheBookCanBeReadAgain();
    book_.onSave = noMemory;
    main_->command("OnDelete").use();
    application_.runUntilIdle();
    EXPECT_EQ(alerts(), (Lines{message, "Confirm to delete", message}));
    expectIdle();
    expectTheBookCanBeReadAgain();
}

TEST_F(JobFailureTest, OfASearchIsReportedAsUnexpected)
{
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(this, kMsgShowMessage, [](const Notification& notification) {
        if (notification.text() == "Finding duplicated contacts...") {
            throw std::out_of_range("index 7");
        }
    });

    start(file_);
    center.removeObserver(this, kMsgShowMessage);

    EXPECT_EQ(failures(), Lines{"An unexpected error occurred: index 7"});
    EXPECT_EQ(progressWasVisible_, std::vector{false});
    EXPECT_EQ(emptiness(), "The search failed");
    expectIdle();
    expectTheBookCanBeReadAgain();
}

TEST_F(JobFailureTest, LeavesNoRowsOfAFinishedSearch)
{
    makeWindow();
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(this, kMsgReload, [](const Notification& /*notification*/) {
        throw std::runtime_error("no window");
    });
    window_->open(file_);
    window_->applicationDidFinishLaunching();

    window_->applicationDidBecomeActive();
    application_.runUntilIdle();
    center.removeObserver(this, kMsgReload);

    EXPECT_EQ(alerts(), Lines{"An unexpected error occurred: no window"});
    EXPECT_TRUE(ContactsParser::parser().duplicates().empty());
    EXPECT_EQ(table().rows, 0U);
    EXPECT_EQ(emptiness(), "The search failed");
    expectIdle();
    expectTheBookCanBeReadAgain();
}

TEST_F(JobFailureTest, OfADeletionIsFollowedByAReload)
{
    start(file_);
    book_.onSave = [] { throw PlatformError("“address-book.vcf” is read-only."); };

    main_->command("OnDelete").use();
    application_.runUntilIdle();

    EXPECT_EQ(alerts(), (Lines{"Confirm to delete", "“address-book.vcf” is read-only."}));
    EXPECT_EQ(failures(), Lines{"“address-book.vcf” is read-only."});
    EXPECT_EQ(progressWasVisible_, std::vector{false});
    EXPECT_EQ(application_.threads,
              (Lines{"LoadContacts", "FindDuplicates", "DeleteCheckedContacts", "LoadContacts",
                     "FindDuplicates"}));
    // The reload restores the people that the engine had already forgotten.
    EXPECT_EQ(book_.storedUids(), (Lines{"ann-1", "ben", "ann-2"}));
    EXPECT_EQ(table().rows, 2U);
    EXPECT_EQ(main_->textField("txtTotal").stringValue, "2 duplicates of 3");
    EXPECT_EQ(emptiness(), "");
    expectIdle();
    EXPECT_TRUE(main_->command("OnDelete").isEnabled);
}

TEST_F(JobFailureTest, OfADeletionUnchecksEverybodyWhenTheReloadIsCancelled)
{
    start(file_);
    book_.onSave = [] { throw PlatformError("“address-book.vcf” is read-only."); };
    dialogAnswer_ = "OnCancel";

    main_->command("OnDelete").use();
    application_.runUntilIdle();

    EXPECT_EQ(emptiness(), "The search was cancelled");
    expectIdle();
    for (const auto& contact : ContactsParser::parser().contacts()) {
        EXPECT_FALSE(contact.value.isChecked());
    }
}

TEST_F(JobFailureTest, OfADeletionAndOfItsReloadAreReportedInOrder)
{
    start(file_);
    book_.onSave = [this] {
        book_.onRead = [] { throw PlatformError("“address-book.vcf” has gone."); };
        throw PlatformError("“address-book.vcf” is read-only.");
    };

    main_->command("OnDelete").use();
    application_.runUntilIdle();

    EXPECT_EQ(alerts(), (Lines{"Confirm to delete", "“address-book.vcf” is read-only.",
                               "“address-book.vcf” has gone."}));
    EXPECT_EQ(emptiness(), "The address book could not be read");
    expectIdle();
    book_.onRead = [] {};
    expectTheBookCanBeReadAgain();
}

TEST_F(JobFailureTest, NeedsNoProgressWindow)
{
    loader_.missing.insert("ProgressWindow");
    book_.onRead = [] { throw PlatformError("“address-book.vcf” cannot be read."); };

    start(file_);

    EXPECT_EQ(alerts(), Lines{"“address-book.vcf” cannot be read."});
    expectIdle();
}

}  // namespace
}  // namespace dunmora::test
