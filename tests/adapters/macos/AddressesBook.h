#pragma once

#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace dunmora::test {

/// How a framework call fails.
enum class Fault { None, Refuse, Raise };

/// An address book of GNUstep's Addresses in its own folder, with the order of people and the
/// faults that the test sets. It is the framework's shared address book during its lifetime.
/// Thread: the test's, while no framework call runs.
class AddressesBook final {
public:
    struct State {
        std::vector<std::string> order;
        bool isMissing = false;
        Fault people = Fault::None;
        Fault remove = Fault::None;
        /// How many removals succeed before the fault.
        std::size_t removalsBefore = 0;
        Fault save = Fault::None;
        Fault add = Fault::None;
        /// How many additions succeed before the fault.
        std::size_t additionsBefore = 0;
        /// The uid of an added person with this first name; Addresses numbers them if it is null.
        std::string (*uidOfAdded)(const std::string& firstName) = nullptr;
        /// Writes and reads vCards that hold every contact field. Those of Addresses hold less.
        bool hasWholeCards = false;
    };

    AddressesBook();
    ~AddressesBook();
    AddressesBook(const AddressesBook&) = delete;
    AddressesBook& operator=(const AddressesBook&) = delete;

    State& state() { return *state_; }

    /// Replaces everyone with these people, as another program would.
    void hold(const std::vector<FakePerson>& people);
    /// Changes the person's first name, as another program would, and the framework notices.
    void rename(const std::string& uid, const std::string& firstName);
    /// Adds the person, as another program would.
    void add(const FakePerson& person);
    /// Adds a group with one member, as another program would.
    void addGroup(const std::string& name, const std::string& uid);
    /// Removes the person, as another program would.
    void take(const std::string& uid);
    /// Replaces the person's file with one that cannot be read.
    void damage(const std::string& uid);

    std::vector<std::string> uidsSeenByOthers() const;
    /// A text that differs after each write.
    std::string trace() const;

    /// Locks the book, as another program would. Addresses then saves nothing and reports that.
    void breakSaving() const;
    void mendSaving() const;

    const std::filesystem::path& folder() const { return folder_.path(); }

private:
    /// Makes Addresses read the person's file again.
    void forget(const std::string& uid);
    std::filesystem::path fileOf(const std::string& uid) const;

    TemporaryFolder folder_;
    std::unique_ptr<State> state_ = std::make_unique<State>();
    void* book_ = nullptr;
};

/// Sets the folder of the framework's own shared address book, keeps it from starting a daemon, and
/// corrects how Addresses writes vCards, which would crash. Call once per process, before any other
/// use of the framework.
void keepFrameworkPrivate(const std::filesystem::path& folder);

/// Throws an Objective-C exception.
void raiseInObjectiveC(const std::string& reason);

}  // namespace dunmora::test
