#pragma once

#include "platform/AddressBook.h"
#include "platform/PlatformError.h"

#include <algorithm>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace dunmora::test {

inline std::vector<std::string> uidsOf(std::span<const Person> people)
{
    std::vector<std::string> uids;
    uids.reserve(people.size());
    for (const auto& person : people) {
        uids.emplace_back(person.uid);
    }
    return uids;
}

/// Lists the people again, as a deletion does, and marks these as removed.
inline void askFor(AddressBook& book, const std::vector<std::string>& uids)
{
    for (const auto& person : book.people()) {
        if (std::find(uids.begin(), uids.end(), person.uid) != uids.end()) {
            book.removeRecord(person);
        }
    }
}

/// The error that the user sees; empty when the action succeeds.
inline std::string failureOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const PlatformError& error) {
        return error.what();
    }
    return "";
}

}  // namespace dunmora::test
