#pragma once

#include "tests/fakes/TemporaryFolder.h"

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {

/// A private session bus and private folders, in which the real address book service starts on its
/// first call. Everything ends with this object, or with the test's process.
///
/// One per process, because GLib stays with the first bus that it has used. Create it before any
/// call to GLib: it changes the process's environment.
class PrivateDesktop final {
public:
    /// Whether the service and a bus to run it on are installed.
    static bool isPossible();

    /// The process's only one; the first call creates it.
    static PrivateDesktop& ofThisProcess();

    ~PrivateDesktop();
    PrivateDesktop(const PrivateDesktop&) = delete;
    PrivateDesktop& operator=(const PrivateDesktop&) = delete;

    /// A text that differs after each write of a local book.
    std::string stored(const std::string& book) const;

    /// Ends the bus, as the end of a session does.
    void endBus();

    /// Sends a signal to the processes that serve the address books. Returns their number.
    std::size_t signalFactories(int signal) const;

private:
    PrivateDesktop();
    void startBus(const std::filesystem::path& configuration);
    std::vector<pid_t> processes() const;

    TemporaryFolder folder_;
    pid_t bus_ = -1;
};

}  // namespace dunmora::test
