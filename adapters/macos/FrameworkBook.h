#pragma once

#include "adapters/macos/FrameworkPerson.h"

#include <cstddef>
#include <optional>
#include <string>

namespace dunmora {

/// The shared address book of the framework and the people in it at one moment.
///
/// Thread: all of its life within one call of the framework's thread. Errors: exceptions of
/// Objective-C, wherever the framework throws one.
class FrameworkBook final {
public:
    FrameworkBook();
    ~FrameworkBook();
    FrameworkBook(const FrameworkBook&) = delete;
    FrameworkBook& operator=(const FrameworkBook&) = delete;

    /// Whether there is an address book; the framework gives none to a program that the user has
    /// not allowed to have it. Without one nothing else may be asked.
    bool isThere() const { return people_ != nullptr; }

    std::size_t size() const { return size_; }

    /// The uid of the person at the index, empty when it has none.
    std::string uid(std::size_t index) const;
    FrameworkPerson person(std::size_t index) const;
    /// The person as a vCard, UTF-8; none when the framework gives none.
    std::optional<std::string> vCard(std::size_t index) const;

    /// Marks the person as removed. Only `save` can end that: the framework has nothing that takes
    /// it back. Returns whether the framework did it.
    bool removeRecord(std::size_t index);

    /// Returns whether the framework has saved the book.
    bool save();

private:
    void* book_ = nullptr;
    void* people_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace dunmora
