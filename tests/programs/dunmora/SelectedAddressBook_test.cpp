#include "programs/dunmora/SelectedAddressBook.h"

#include "platform/PlatformError.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/LentAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

std::string failureOf(const std::function<void()>& call)
{
    try {
        call();
        return {};
    } catch (const PlatformError& error) {
        return error.what();
    }
}

TEST(SelectedAddressBook, TellsHowToChooseOneUntilThereIsOne)
{
    SelectedAddressBook book;
    const std::string advice =
        "No address book is open. Choose File > Open… to open a vCard file or a folder of them.";
    const Person person{};
    const std::vector<const Person*> people{&person};

    EXPECT_EQ(failureOf([&] { book.readPeople(); }), advice);
    EXPECT_EQ(failureOf([&] { book.people(); }), advice);
    EXPECT_EQ(failureOf([&] { book.removeRecord(person); }), advice);
    EXPECT_EQ(failureOf([&] { book.save(); }), advice);
    EXPECT_EQ(failureOf([&] { book.checkBackUp(people); }), advice);
    EXPECT_EQ(failureOf([&] { book.backUp(people, "backup.vcf"); }), advice);
    EXPECT_TRUE(book.notes().remarks.empty());
}

TEST(SelectedAddressBook, IsTheOneThatWasChosenLast)
{
    const TemporaryFolder folder;
    FakePerson ann;
    FakePerson ben;
    ben.uid = "uid-ben";
    FakeAddressBook first({ann});
    FakeAddressBook second({ann, ben});
    second.readingNotes.cardsSkipped = 3;
    second.onCheckBackUp = [] { throw PlatformError("No backup."); };
    SelectedAddressBook book;

    book.select(std::make_unique<LentAddressBook>(first));
    EXPECT_EQ(book.readPeople().size(), 1U);

    book.select(std::make_unique<LentAddressBook>(second));
    EXPECT_EQ(book.readPeople().size(), 2U);
    EXPECT_EQ(book.notes().cardsSkipped, 3U);
    const auto people = book.people();
    const std::vector<const Person*> both{&people.front(), &people.back()};
    EXPECT_EQ(failureOf([&] { book.checkBackUp(both); }), "No backup.");
    book.backUp(both, folder.path() / "backup.vcf");
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "backup.vcf"));
    book.removeRecord(people[1]);
    book.save();

    EXPECT_EQ(first.writes(), 0U);
    EXPECT_EQ(second.storedUids(), std::vector<std::string>{"uid-ann"});
}

}  // namespace
}  // namespace dunmora::test
