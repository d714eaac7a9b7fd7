#pragma once

#include "adapters/macos/FrameworkPerson.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// What messages call the framework's address book.
constexpr std::string_view kMacBookTitle = "The address book of this Mac";

/// The framework's shared address book, and the people in it at one moment.
///
/// Thread: the framework's thread, within one call. Errors: Objective-C exceptions from the
/// framework.
class FrameworkBook final {
public:
    FrameworkBook();
    ~FrameworkBook();
    FrameworkBook(const FrameworkBook&) = delete;
    FrameworkBook& operator=(const FrameworkBook&) = delete;

    /// Whether there is an address book. The framework returns none to a program without the user's
    /// permission; nothing else may be called then.
    bool isThere() const { return people_ != nullptr; }

    std::size_t size() const { return size_; }

    /// The uid of the person at the index, empty when there is none.
    std::string uid(std::size_t index) const;
    FrameworkPerson person(std::size_t index) const;
    /// The person as a vCard, in UTF-8; empty when the framework returns none.
    std::optional<std::string> vCard(std::size_t index) const;

    /// The names of the groups that the person is in.
    std::vector<std::string> groups(std::size_t index) const;

    /// Returns the person with this uid; nothing when there is none. Needs no list of people.
    static std::optional<FrameworkCard> card(const std::string& uid);

    /// Marks the person as removed, until `save`: the framework cannot undo it. Returns whether the
    /// framework did so.
    bool removeRecord(std::size_t index);

    /// Adds a person with what the vCard holds, until `save`, and returns the person as the
    /// framework now has them, without groups. Nothing when the framework refuses.
    std::optional<FrameworkCard> add(const std::string& vCard);
    /// Removes those who were added through this object. Returns whether the framework did so.
    bool removeAdded();

    /// Returns whether the framework has saved the book.
    bool save();

private:
    // Retained.
    std::vector<void*> added_;
    void* book_ = nullptr;
    void* people_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace dunmora
