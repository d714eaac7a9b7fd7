#pragma once

#include "adapters/macos/FrameworkPerson.h"

#include <cstddef>
#include <optional>
#include <string>

namespace dunmora {

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

    /// Returns the person with this uid; nothing when there is none. Needs no list of people.
    static std::optional<FrameworkCard> card(const std::string& uid);

    /// Marks the person as removed, until `save`: the framework cannot undo it. Returns whether the
    /// framework did so.
    bool removeRecord(std::size_t index);

    /// Returns whether the framework has saved the book.
    bool save();

private:
    void* book_ = nullptr;
    void* people_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace dunmora
