#include "adapters/eds/EdsBooks.h"
#include "platform/AddressBook.h"
#include "tests/adapters/eds/Deleting.h"
#include "tests/adapters/eds/OtherClient.h"
#include "tests/adapters/eds/PrivateDesktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

// A separate program, because nothing in this process can use the service afterwards.

namespace dunmora::test {
namespace {

TEST(EdsLostBus, IsReportedAndNeitherHangsNorEndsTheProgram)
{
    if (!PrivateDesktop::isPossible()) {
        GTEST_SKIP() << "Evolution Data Server is not installed.";
    }
    auto& desktop = PrivateDesktop::ofThisProcess();
    OtherClient others;
    others.makeBook("friends", "Friends");
    others.add("friends", {"BEGIN:VCARD\r\nVERSION:3.0\r\nUID:ann\r\nFN:Ann\r\nEND:VCARD\r\n"});
    const auto book = openEdsBook("eds:friends").addressBook;
    for (const auto& person : book->readPeople()) {
        book->removeRecord(person);
    }
    const auto begin = std::chrono::steady_clock::now();

    desktop.endBus();
    const auto saving = failureOf([&] { book->save(); });
    const auto reading = failureOf([&] { book->readPeople(); });

    EXPECT_EQ(
        saving,
        "Not everybody was deleted. Of 1 person, 1 was not tried. “Friends”: The connection to the "
        "session bus (D-Bus) is closed. Reload the address book before you delete more.");
    EXPECT_EQ(reading,
              "The desktop's address books cannot be reached: The connection to the session bus "
              "(D-Bus) is closed.");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
}

}  // namespace
}  // namespace dunmora::test
