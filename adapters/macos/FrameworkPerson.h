#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

/// What the framework tells of a person, in texts of its own. Equal ones have not been changed.
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
    /// To the framework's own precision: a change within a second is a change.
    std::optional<std::chrono::duration<double>> modified;
    std::optional<std::vector<Phone>> phones;

    bool operator==(const FrameworkPerson&) const = default;
};

}  // namespace dunmora
