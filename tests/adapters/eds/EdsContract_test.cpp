#include "adapters/eds/EdsBooks.h"
#include "tests/adapters/eds/OtherClient.h"
#include "tests/adapters/eds/PrivateDesktop.h"
#include "tests/contract/AddressBookContract.h"
#include "tests/contract/CardRestorerContract.h"
#include "tests/contract/CardSourceContract.h"
#include "tests/fakes/FakeCard.h"
#include "tests/fakes/People.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

/// One local book of the real service.
class EdsBookUnderTest final {
public:
    static std::optional<std::string> whyNot(std::string_view property)
    {
        if (!PrivateDesktop::isPossible()) {
            return "Evolution Data Server is not installed.";
        }
        if (property == "PutsPeopleBackWhereTheyWere") {
            return "The service decides on the order of its people.";
        }
        if (property == "LeavesMissingPropertiesEmpty") {
            return "The service gives every contact a modification date.";
        }
        if (property == "NamesTheListsOfAPerson") {
            return "The service has lists of its own kind, which are not read.";
        }
        return std::nullopt;
    }

    AddressBook& book() { return *book_.addressBook; }
    CardSource& cardSource() { return *book_.cardSource; }
    CardRestorer& restorer() { return *book_.cardRestorer; }

    void hold(const std::vector<FakePerson>& people)
    {
        PrivateDesktop::ofThisProcess();
        if (!book_.addressBook) {
            others_.makeBook(uid_, "Contract");
            book_ = openEdsBook(std::string(kEdsName) + uid_);
        }
        others_.remove(uid_, others_.uids(uid_));
        std::vector<std::string> cards;
        cards.reserve(people.size());
        for (const auto& person : people) {
            cards.push_back(cardOf(person));
        }
        others_.add(uid_, cards);
    }
    std::vector<std::string> uidsSeenByOthers() { return others_.uids(uid_); }
    std::string trace() { return PrivateDesktop::ofThisProcess().stored(uid_); }

    // People whom others have changed are not removed.
    void breakSaving()
    {
        before_ = others_.cards(uid_);
        for (const auto& [uid, card] : before_) {
            others_.edit(uid_, "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + uid +
                                   "\r\nFN:Somebody Else\r\nEND:VCARD");
        }
    }
    void mendSaving()
    {
        others_.remove(uid_, others_.uids(uid_));
        std::vector<std::string> cards;
        for (const auto& [uid, card] : before_) {
            cards.push_back(card);
        }
        others_.add(uid_, cards);
    }

    void addBehindTheBack(const FakePerson& person) { others_.add(uid_, {cardOf(person)}); }

    // The uids belong to others, so the removed people cannot return.
    void breakRestoring()
    {
        for (const auto* const uid : {"a", "b", "c"}) {
            const auto uids = others_.uids(uid_);
            if (std::find(uids.begin(), uids.end(), uid) == uids.end()) {
                addBehindTheBack(named(uid, "Somebody", "Else"));
                intruders_.emplace_back(uid);
            }
        }
    }
    void mendRestoring() { others_.remove(uid_, std::exchange(intruders_, {})); }

private:
    // Each test has its own book.
    std::string uid_ = testing::UnitTest::GetInstance()->current_test_info()->name();
    OtherClient others_;
    std::map<std::string, std::string> before_;
    std::vector<std::string> intruders_;
    // Opened with the first people, because a skipped test must not start the service.
    OpenedBook book_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Eds, AddressBookContract, EdsBookUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(Eds, CardSourceContract, EdsBookUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(Eds, CardRestorerContract, EdsBookUnderTest);

}  // namespace
}  // namespace dunmora::test
