#include "adapters/eds/EdsBooks.h"
#include "platform/AddressBook.h"
#include "tests/adapters/eds/Deleting.h"
#include "tests/adapters/eds/OtherClient.h"
#include "tests/adapters/eds/PrivateDesktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

// A program of its own: nothing in this process can use the service any more after it.

namespace dunmora::test {
namespace {

TEST(EdsLostBus, IsToldAndNeitherHangsNorEndsTheProgram)
{
    if (!PrivateDesktop::isPossible()) {
        GTEST_SKIP() << "Evolution Data Server is not installed.";
    }
    auto& desktop = PrivateDesktop::ofThisProcess();
    OtherClient others;
    others.makeBook("friends", "Friends");
    others.add("friends", {"BEGIN:VCARD\r\nVERSION:3.0\r\nUID:ann\r\nFN:Ann\r\nEND:VCARD\r\n"});
    const auto book = openEdsBook("eds:friends");
    for (const auto& person : book->readPeople()) {
        book->removeRecord(person);
    }
    const auto begin = std::chrono::steady_clock::now();

    desktop.endBus();
    const auto saving = failureOf([&] { book->save(); });
    const auto reading = failureOf([&] { book->readPeople(); });

    EXPECT_EQ(saving,
              "Not everybody was deleted. Of 1 person 0 were deleted, 0 were gone already, 0 have "
              "changed meanwhile and were left alone, 0 are still there. 1 was not tried. "
              "“Friends”: The connection "
              "to the session bus (D-Bus) is closed.");
    EXPECT_EQ(reading,
              "The desktop's address books cannot be reached: The connection to the session bus "
              "(D-Bus) is closed.");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
}

}  // namespace
}  // namespace dunmora::test
