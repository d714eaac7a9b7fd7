#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace dunmora {

/// The user's preferences: Boolean values with string keys, stored between runs. Keys consist of
/// ASCII letters, digits, `_`, `-` and `.`.
///
/// Thread: any, several at once. Errors: none; a value that cannot be stored stays in effect until
/// the program ends, and the adapter reports the first failure of each kind on standard error and
/// to the program.
class UserDefaults {
public:
    /// Receives a failure as a message for the user. The adapter calls it on the thread whose call
    /// has failed, without holding a lock. It must not throw.
    using OnFailure = std::function<void(const std::string& message)>;

    virtual ~UserDefaults() = default;

    /// Whether the key has a stored value of any type. Does not block on the disk.
    virtual bool hasValue(std::string_view key) const = 0;

    /// The value as a Boolean: a number is true if it is not zero, a missing key is false.
    /// Does not block on the disk.
    virtual bool boolForKey(std::string_view key) const = 0;

    /// Sets the value, for the next `synchronize` to store.
    virtual void setBool(std::string_view key, bool value) = 0;

    /// Stores the values set since the last time as one change, where the system can: no program
    /// reads only some of them, and values that other programs have stored for other keys are kept.
    /// Then reads the values that other programs have stored. Returns whether every value set so
    /// far has been stored. Blocks on the disk.
    virtual bool synchronize() = 0;
};

}  // namespace dunmora
