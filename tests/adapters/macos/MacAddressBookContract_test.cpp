#include "adapters/macos/MacAddressBook.h"
#include "tests/adapters/macos/AddressesBook.h"
#include "tests/contract/AddressBookContract.h"

#include <optional>
#include <string>
#include <string_view>

namespace dunmora::test {
namespace {

class MacUnderTest final {
public:
    /// What Addresses has not, whatever stands on it. What is left of each has a test of its own in
    /// MacAddressBook_test.cpp.
    static std::optional<std::string> whyNot(std::string_view property)
    {
        if (property == "TellsAllThatItKnowsAboutAPerson") {
            return "Addresses reports the moment of reading as everyone's modification date.";
        }
        if (property == "TellsWhatIsMissing") {
            return "Addresses reports the moment of reading as everyone's modification date, and "
                   "an empty list of phones in place of none.";
        }
        if (property == "BacksUpPeopleToANewFile") {
            return "The vCards that Addresses writes have no UID.";
        }
        if (property == "ForgetsRemovalsWhenSavingFails") {
            return "The framework cannot take removals back, and nothing more is deleted then.";
        }
        return std::nullopt;
    }

    AddressBook& book() { return book_; }
    void hold(const std::vector<FakePerson>& people) { addresses_.hold(people); }
    std::vector<std::string> uidsSeenByOthers() { return addresses_.uidsSeenByOthers(); }
    std::string trace() { return addresses_.trace(); }
    void breakSaving() { addresses_.breakSaving(); }
    void mendSaving() { addresses_.mendSaving(); }

private:
    AddressesBook addresses_;
    MacAddressBook::StrandedRemovals stranded_ = false;
    MacAddressBook book_{stranded_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, AddressBookContract, MacUnderTest);

}  // namespace
}  // namespace dunmora::test
