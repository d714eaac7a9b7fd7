#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

/// A copy of what the framework holds of a person. A person whose copies are equal has not changed.
struct FrameworkPerson {
    struct Phone {
        std::optional<std::string> label;
        std::string value;

        bool operator==(const Phone&) const = default;
    };

    std::string uid;
    std::optional<std::string> firstName;
    std::optional<std::string> lastName;
    std::optional<std::string> nickname;
    /// In the framework's precision, to notice a change within the same second.
    std::optional<std::chrono::duration<double>> modified;
    std::optional<std::vector<Phone>> phones;

    bool operator==(const FrameworkPerson&) const = default;
};

/// Everything that the framework holds of a person.
struct FrameworkCard {
    FrameworkPerson person;
    /// In UTF-8; nothing when the framework returns none.
    std::optional<std::string> vCard;
    /// The names of the person's groups.
    std::vector<std::string> groups;
};

}  // namespace dunmora
