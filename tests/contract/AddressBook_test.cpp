#include "adapters/vcard/VCardAddressBook.h"
#include "tests/adapters/vcard/BookTest.h"
#include "tests/contract/AddressBookContract.h"
#include "tests/contract/CardRestorerContract.h"
#include "tests/contract/CardSourceContract.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/FakeCard.h"
#include "tests/fakes/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

class FakeUnderTest final {
public:
    AddressBook& book() { return book_; }
    CardSource& cardSource() { return book_; }
    CardRestorer& restorer() { return book_; }

    void hold(const std::vector<FakePerson>& people) { book_ = FakeAddressBook(people); }
    void addBehindTheBack(const FakePerson& person) { book_.addBehindTheBack(person); }
    std::vector<std::string> uidsSeenByOthers() { return book_.storedUids(); }
    std::string trace() { return std::to_string(book_.writes()); }

    void breakSaving()
    {
        book_.onSave = [] { throw PlatformError("The disk is full."); };
    }
    void mendSaving()
    {
        book_.onSave = [] {};
    }
    void breakRestoring()
    {
        book_.onRestore = [] { throw PlatformError("The disk is full."); };
    }
    void mendRestoring()
    {
        book_.onRestore = [] {};
    }

private:
    FakeAddressBook book_;
};

class VCardFileUnderTest final {
public:
    AddressBook& book() { return book_; }
    CardSource& cardSource() { return book_; }
    CardRestorer& restorer() { return book_; }

    void addBehindTheBack(const FakePerson& person)
    {
        write(file_, contentOf(file_) + cardOf(person));
    }
    void hold(const std::vector<FakePerson>& people)
    {
        std::string cards;
        for (const auto& person : people) {
            cards += cardOf(person);
        }
        write(file_, cards + listCardsOf(people));
    }
    std::vector<std::string> uidsSeenByOthers() { return uidsIn(file_); }
    std::string trace() { return traceOf(file_); }

    // A read-only file is refused for root, too.
    void breakSaving() { setPermissions(std::filesystem::perms::owner_read); }
    void mendSaving()
    {
        setPermissions(std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    }
    void breakRestoring() { breakSaving(); }
    void mendRestoring() { mendSaving(); }

private:
    void setPermissions(std::filesystem::perms permissions)
    {
        std::filesystem::permissions(file_, permissions);
    }

    TemporaryFolder temporary_;
    std::filesystem::path file_ = temporary_.path() / "book.vcf";
    VCardAddressBook book_{file_};
};

/// Two cards per file, so that removals rewrite some files and delete others.
class VCardFolderUnderTest final {
public:
    AddressBook& book() { return book_; }
    CardSource& cardSource() { return book_; }
    CardRestorer& restorer() { return book_; }

    // Into the last file, which is created when there is none.
    void addBehindTheBack(const FakePerson& person)
    {
        const auto names = namesIn(folder_);
        const auto file = folder_ / (names.empty() ? "a.vcf" : *names.rbegin());
        write(file, (names.empty() ? "" : contentOf(file)) + cardOf(person));
    }
    void hold(const std::vector<FakePerson>& people)
    {
        for (const auto& name : namesIn(folder_)) {
            std::filesystem::remove(folder_ / name);
        }
        for (std::size_t i = 0; i < people.size(); i += 2) {
            const auto name = std::string(1, static_cast<char>('a' + i / 2)) + ".vcf";
            write(folder_ / name,
                  cardOf(people[i]) + (i + 1 < people.size() ? cardOf(people[i + 1]) : ""));
        }
        if (const auto lists = listCardsOf(people); !lists.empty()) {
            write(folder_ / "lists.vcf", lists);
        }
    }
    std::vector<std::string> uidsSeenByOthers() { return uidsIn(folder_); }
    std::string trace()
    {
        std::string traces;
        for (const auto& name : namesIn(folder_)) {
            traces += name + " " + traceOf(folder_ / name) + "\n";
        }
        return traces;
    }

    void breakSaving() { setPermissions(std::filesystem::perms::owner_read); }
    void mendSaving()
    {
        setPermissions(std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    }
    void breakRestoring() { breakSaving(); }
    void mendRestoring() { mendSaving(); }

private:
    void setPermissions(std::filesystem::perms permissions)
    {
        for (const auto& name : namesIn(folder_)) {
            std::filesystem::permissions(folder_ / name, permissions);
        }
    }

    TemporaryFolder temporary_;
    std::filesystem::path folder_ = temporary_.path();
    VCardAddressBook book_{folder_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, AddressBookContract, FakeUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(VCardFile, AddressBookContract, VCardFileUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(VCardFolder, AddressBookContract, VCardFolderUnderTest);

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, CardSourceContract, FakeUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(VCardFile, CardSourceContract, VCardFileUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(VCardFolder, CardSourceContract, VCardFolderUnderTest);

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, CardRestorerContract, FakeUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(VCardFile, CardRestorerContract, VCardFileUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(VCardFolder, CardRestorerContract, VCardFolderUnderTest);

}  // namespace
}  // namespace dunmora::test
