#include "adapters/macos/MacUserDefaults.h"
#include "platform/AddressBook.h"
#include "programs/machine/Machine.h"
#include "tests/adapters/macos/AddressesBook.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace dunmora::test {
namespace {

TEST(MacMachine, OpensTheAddressBookOfTheMacByItsName)
{
    AddressesBook addresses;
    addresses.hold({FakePerson()});

    const auto book = addressBookAt("macos:");

    ASSERT_EQ(book->readPeople().size(), 1U);
    EXPECT_EQ(book->readPeople()[0].firstName, "Ann");
    EXPECT_EQ(ownAddressBookName(), "macos:");
    EXPECT_TRUE(hasOwnAddressBook());
}

TEST(MacMachine, OpensFilesByTheirPath)
{
    AddressesBook addresses;
    addresses.hold({FakePerson()});
    const TemporaryFolder folder;
    const auto file = folder.path() / "book.vcf";
    write(file, "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:bob\r\nN:;Bob\r\nEND:VCARD\r\n");

    const auto book = addressBookAt(file);

    ASSERT_EQ(book->readPeople().size(), 1U);
    EXPECT_EQ(book->readPeople()[0].firstName, "Bob");
}

TEST(MacMachine, KeepsPreferencesWhereTheMacDoes)
{
    const auto defaults = userDefaults();

    defaults->setBool("machine", true);

    EXPECT_TRUE(MacUserDefaults().boolForKey("machine"));
    EXPECT_TRUE(hasDisplay());
}

}  // namespace
}  // namespace dunmora::test
