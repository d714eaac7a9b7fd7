#pragma once

#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/RunCli.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {

/// Runs the terminal program on an address book in memory. No stream is a terminal unless the test
/// makes it one.
class CliTest : public testing::Test {
protected:
    CliTest()
    {
        environment_.progressDelay = std::chrono::milliseconds(0);
        environment_.openStandardInput = [this] {
            opened_.emplace_back("standard input");
            return lent(book_);
        };
        environment_.readStandardInput = [this](std::uintmax_t /*largest*/) { return typed_; };
    }

    void bookHolds(std::vector<FakePerson> people) { book_ = FakeAddressBook(std::move(people)); }

    /// Ann twice, the first with a phone number, and Ben once.
    void bookHoldsAnnTwice()
    {
        bookHolds({withMobile(named("ann-1", "Ann")), named("ben", "Ben"), named("ann-2", "Ann")});
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

    /// Runs with this as the standard output.
    int runInto(std::streambuf& buffer, const std::vector<std::string>& arguments)
    {
        std::ostream out(&buffer);
        const CliEnvironment environment{
            environment_.openAddressBook, userDefaults_, bundle_, in_, out, err_};
        return runCli(arguments, environment);
    }

    std::string out() const { return out_.str(); }
    std::string err() const { return err_.str(); }

    FakeAddressBook book_;
    /// The disk on which this program and others store their preferences.
    std::shared_ptr<FakeDisk> disk_ = std::make_shared<FakeDisk>();
    FakeUserDefaults userDefaults_{disk_};
    FakeBundle bundle_;
    /// What the user types.
    std::string typed_;
    /// The names by which the address book was opened; "standard input" without one.
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
