#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// A handful of flags by name, read all the time and hardly ever changed: a reader takes no lock,
/// and no change makes it wait.
///
/// A change makes a new table and puts it in the place of the old one, which is kept until the
/// object is destroyed, because somebody may still be reading it.
///
/// Thread: any, several at once.
class SharedFlags final {
public:
    using Flags = std::map<std::string, bool, std::less<>>;

    SharedFlags();
    ~SharedFlags() = default;
    SharedFlags(const SharedFlags&) = delete;
    SharedFlags& operator=(const SharedFlags&) = delete;

    /// The flag with this name, or null. It never changes, and is valid as long as this object.
    const bool* find(std::string_view name) const;

    /// Adds the flag, or gives it another value.
    void set(std::string_view name, bool value);

    /// Replaces all flags at once.
    void replace(const Flags& flags);

private:
    struct Flag {
        std::string name;
        bool value;

        bool operator==(const Flag&) const = default;
    };
    using Table = std::vector<Flag>;

    /// The flag with this name, of whatever size, or null.
    static const bool* findIn(const Table& table, std::string_view name);
    /// Lets readers find this table, unless it equals the current one. The caller holds the mutex.
    void publish(Table table);

    std::mutex changes_;
    std::vector<std::unique_ptr<const Table>> tables_;
    // The last of them.
    std::atomic<const Table*> current_;
};

}  // namespace dunmora
