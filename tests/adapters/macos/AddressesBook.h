#pragma once

#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace dunmora::test {

/// What the framework does instead of what it is asked.
enum class Fault { None, Refuse, Raise };

/// The address book of GNUstep's Addresses in a folder of its own, which the framework shares with
/// the program as long as this lives, with the order of people and the faults that a test wants.
/// Thread: the test's, while no call of the framework runs.
class AddressesBook final {
public:
    struct State {
        std::vector<std::string> order;
        bool isMissing = false;
        Fault people = Fault::None;
        Fault remove = Fault::None;
        /// How many removals go well before the fault.
        std::size_t removalsBefore = 0;
        Fault save = Fault::None;
    };

    AddressesBook();
    ~AddressesBook();
    AddressesBook(const AddressesBook&) = delete;
    AddressesBook& operator=(const AddressesBook&) = delete;

    State& state() { return *state_; }

    /// Others put these people in, in place of all.
    void hold(const std::vector<FakePerson>& people);
    /// Another program gives the person another first name, and the framework has heard of it.
    void rename(const std::string& uid, const std::string& firstName);
    /// Another program takes the person out.
    void take(const std::string& uid);
    /// Writes what cannot be read in the place of the person.
    void damage(const std::string& uid);

    std::vector<std::string> uidsSeenByOthers() const;
    /// Another one after each write.
    std::string trace() const;

    /// While another program holds the lock, Addresses saves nothing and says so.
    void breakSaving() const;
    void mendSaving() const;

    const std::filesystem::path& folder() const { return folder_.path(); }

private:
    std::filesystem::path fileOf(const std::string& uid) const;

    TemporaryFolder folder_;
    std::unique_ptr<State> state_ = std::make_unique<State>();
    void* book_ = nullptr;
};

/// Shows the framework a folder for the address book that it shares by itself, and lets no daemon
/// be started for its sake. Before any other use of it; once in a process.
void keepFrameworkPrivate(const std::filesystem::path& folder);

/// Throws as the framework does.
void raiseInObjectiveC(const std::string& reason);

}  // namespace dunmora::test
