#include "adapters/macos/MacUserDefaults.h"
#include "adapters/macos/MacWindowMemory.h"
#include "platform/AddressBook.h"
#include "platform/CardRestorer.h"
#include "platform/CardSource.h"
#include "platform/PlatformError.h"
#include "programs/platform/PlatformChoice.h"
#include "tests/adapters/macos/AddressesBook.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace dunmora::test {
namespace {

TEST(MacPlatform, OpensTheAddressBookOfTheMacByItsName)
{
    AddressesBook addresses;
    addresses.hold({FakePerson()});

    const auto opened = openAddressBook("macos:");
    const auto book = opened.addressBook;

    ASSERT_EQ(book->readPeople().size(), 1U);
    EXPECT_EQ(book->readPeople()[0].firstName, "Ann");
    ASSERT_TRUE(opened.cardSource);
    EXPECT_TRUE(opened.cardSource->card(FakePerson().uid));
    ASSERT_TRUE(opened.cardRestorer);
    EXPECT_EQ(opened.cardRestorer->lastRemoved(), 0U);
    EXPECT_EQ(systemAddressBookName(), "macos:");
    EXPECT_EQ(systemAddressBookProblem(), "");
}

TEST(MacPlatform, NamesItsOneAddressBookInTheHelp)
{
    EXPECT_EQ(systemAddressBookHelp(), "macos: for the Mac's own address book");
    EXPECT_THROW(listDesktopBooks(), PlatformError);
}

TEST(MacPlatform, OpensFilesByTheirPath)
{
    AddressesBook addresses;
    addresses.hold({FakePerson()});
    const TemporaryFolder folder;
    const auto file = folder.path() / "book.vcf";
    write(file, "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:bob\r\nN:;Bob\r\nEND:VCARD\r\n");

    const auto book = openAddressBook(file).addressBook;

    ASSERT_EQ(book->readPeople().size(), 1U);
    EXPECT_EQ(book->readPeople()[0].firstName, "Bob");
}

TEST(MacPlatform, StoresPreferencesInTheUserDefaults)
{
    const auto defaults = userDefaults();

    defaults->setBool("platform", true);

    EXPECT_TRUE(MacUserDefaults().boolForKey("platform"));
    EXPECT_TRUE(hasDisplay());
}

TEST(MacPlatform, StoresWhatWindowsRememberInTheUserDefaults)
{
    windowMemory()->store("PlatformWindow", {{"size", "1 2"}});

    EXPECT_EQ(MacWindowMemory().load("PlatformWindow"), (WindowMemory::Texts{{"size", "1 2"}}));
}

}  // namespace
}  // namespace dunmora::test
