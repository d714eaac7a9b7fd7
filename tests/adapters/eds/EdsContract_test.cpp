#include "adapters/eds/EdsBooks.h"
#include "tests/adapters/eds/OtherClient.h"
#include "tests/adapters/eds/PrivateDesktop.h"
#include "tests/contract/AddressBookContract.h"
#include "tests/contract/CardSourceContract.h"
#include "tests/fakes/FakeCard.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
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
        if (property == "LeavesMissingPropertiesEmpty") {
            return "The service gives every contact a modification date.";
        }
        return std::nullopt;
    }

    AddressBook& book() { return *book_.addressBook; }
    CardSource& cardSource() { return *book_.cardSource; }

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

private:
    // Each test has its own book.
    std::string uid_ = testing::UnitTest::GetInstance()->current_test_info()->name();
    OtherClient others_;
    std::map<std::string, std::string> before_;
    // Opened with the first people, because a skipped test must not start the service.
    OpenedBook book_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Eds, AddressBookContract, EdsBookUnderTest);
INSTANTIATE_TYPED_TEST_SUITE_P(Eds, CardSourceContract, EdsBookUnderTest);

}  // namespace
}  // namespace dunmora::test
