#pragma once

#include <string_view>

namespace dunmora {

/// The user's preferences: Boolean values under string keys, kept from run to run.
///
/// Thread: any, several at once. Errors: none is thrown; a value that cannot be stored holds until
/// the program ends, and the adapter tells the user once on standard error.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// Whether a value of any kind is stored under the key. Never blocks on the disk.
    virtual bool hasValue(std::string_view key) const = 0;

    /// The value read as a Boolean; a number is true when it is not zero, an absent key is false.
    /// Never blocks on the disk.
    virtual bool boolForKey(std::string_view key) const = 0;

    /// Stores the value. Other keys keep what other programs gave them meanwhile.
    virtual void setBool(std::string_view key, bool value) = 0;

    /// Brings what was set to the disk and takes over what other programs have written since.
    /// Returns whether everything that was set is on the disk.
    virtual bool synchronize() = 0;
};

}  // namespace dunmora
