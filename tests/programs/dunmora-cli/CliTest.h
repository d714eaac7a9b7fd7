#pragma once

#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/RunCli.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace dunmora::test {

/// Runs the terminal program on an address book in memory. Nothing is a terminal unless a test
/// says so.
class CliTest : public testing::Test {
protected:
    /// Someone of whom every field is filled but the nickname and the phone numbers.
    static FakePerson person(const std::string& uid, const std::string& firstName,
                             const std::string& lastName = "Lee")
    {
        FakePerson person;
        person.uid = uid;
        person.firstName = firstName;
        person.lastName = lastName;
        person.nickname.reset();
        person.phones.reset();
        return person;
    }

    static FakePerson withMobile(FakePerson person, const std::string& number = "555-0100")
    {
        person.phones = {{{"_$!<Mobile>!$_", number}}};
        return person;
    }

    void bookHolds(std::vector<FakePerson> people) { book_ = FakeAddressBook(std::move(people)); }

    /// Ann twice, the first with a phone number, and Ben once.
    void bookHoldsAnnTwice()
    {
        bookHolds(
            {withMobile(person("ann-1", "Ann")), person("ben", "Ben"), person("ann-2", "Ann")});
    }

    void everythingIsATerminal()
    {
        environment_.inIsTerminal = true;
        environment_.outIsTerminal = true;
        environment_.errIsTerminal = true;
    }

    int run(const std::vector<std::string>& arguments)
    {
        in_.str(typed_);
        in_.clear();
        out_.str("");
        err_.str("");
        return runCli(arguments, environment_);
    }

    std::string out() const { return out_.str(); }
    std::string err() const { return err_.str(); }

    FakeAddressBook book_;
    /// Where this program and others keep their preferences.
    std::shared_ptr<FakeDisk> disk_ = std::make_shared<FakeDisk>();
    FakeUserDefaults userDefaults_{disk_};
    FakeBundle bundle_;
    /// What the user types.
    std::string typed_;
    /// The names under which the address book was asked for.
    std::vector<std::string> opened_;
    std::istringstream in_;
    std::ostringstream out_;
    std::ostringstream err_;
    CliEnvironment environment_{[this](const std::string& name) {
                                    opened_.push_back(name);
                                    return lent(book_);
                                },
                                userDefaults_,
                                bundle_,
                                in_,
                                out_,
                                err_};
};

}  // namespace dunmora::test
