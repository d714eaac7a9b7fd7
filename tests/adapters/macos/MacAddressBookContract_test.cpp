#include "adapters/macos/MacAddressBook.h"
#include "tests/adapters/macos/AddressesBook.h"
#include "tests/contract/AddressBookContract.h"
#include "tests/contract/CardRestorerContract.h"
#include "tests/contract/CardSourceContract.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

class MacUnderTest final {
public:
    /// The rules that Addresses itself breaks. MacAddressBook_test.cpp tests the rest of each.
    static std::optional<std::string> whyNot(std::string_view property)
    {
        if (property == "ListsEveryPropertyOfAPerson") {
            return "Addresses reports the moment of reading as everyone's modification date.";
        }
        if (property == "LeavesMissingPropertiesEmpty") {
            return "Addresses reports the moment of reading as everyone's modification date, and "
                   "an empty list of phones in place of none.";
        }
        if (property == "ReturnsWhatIsNoContactField" || property == "ReturnsAPhotoAsItsBytes" ||
            property == "NamesTheListsOfAPerson") {
            return "The people of these tests have contact fields only.";
        }
        if (property == "DiscardsRemovalsWhenSavingFails") {
            return "The framework cannot take removals back, and nothing more is deleted then.";
        }
        return std::nullopt;
    }

    AddressBook& book() { return book_; }
    CardSource& cardSource() { return book_; }
    void hold(const std::vector<FakePerson>& people) { addresses_.hold(people); }
    std::vector<std::string> uidsSeenByOthers() { return addresses_.uidsSeenByOthers(); }
    std::string trace() { return addresses_.trace(); }
    void breakSaving() { addresses_.breakSaving(); }
    void mendSaving() { addresses_.mendSaving(); }

private:
    AddressesBook addresses_;
    MacAddressBook::StrandedChanges stranded_ = false;
    MacAddressBook book_{stranded_};
};

/// With vCards that hold everything, and with the uids of the people whom the rules expect: the
/// framework gives everyone it adds a new one.
class MacRestorerUnderTest final {
public:
    MacRestorerUnderTest()
    {
        addresses_.state().hasWholeCards = true;
        addresses_.state().uidOfAdded = [](const std::string& firstName) {
            constexpr std::string_view kName = "Name of ";
            return firstName == "Carol" ? "c" : firstName.substr(kName.size());
        };
    }

    static std::optional<std::string> whyNot(std::string_view property)
    {
        if (property == "PutsPeopleBackWhereTheyWere") {
            return "The framework decides on people's places.";
        }
        return std::nullopt;
    }

    AddressBook& book() { return book_; }
    CardSource& cardSource() { return book_; }
    CardRestorer& restorer() { return book_; }
    void hold(const std::vector<FakePerson>& people) { addresses_.hold(people); }
    void addBehindTheBack(const FakePerson& person) { addresses_.add(person); }
    std::vector<std::string> uidsSeenByOthers() { return addresses_.uidsSeenByOthers(); }
    std::string trace() { return addresses_.trace(); }
    void breakSaving() { addresses_.breakSaving(); }
    void mendSaving() { addresses_.mendSaving(); }
    void breakRestoring() { addresses_.breakSaving(); }
    void mendRestoring() { addresses_.mendSaving(); }

private:
    AddressesBook addresses_;
    MacAddressBook::StrandedChanges stranded_ = false;
    MacAddressBook book_{stranded_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, AddressBookContract, MacUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, CardSourceContract, MacUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, CardRestorerContract, MacRestorerUnderTest);

}  // namespace
}  // namespace dunmora::test
