#pragma once

#include "tests/fakes/TemporaryFolder.h"

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {

/// A session bus and folders of the test's own, on which the real service for address books is
/// started as soon as it is asked. All of it ends with the object, or with the test's process.
///
/// One a process, because GLib keeps to the first bus that it has met, and made before anything of
/// GLib's is called: the process's environment is changed.
class PrivateDesktop final {
public:
    /// Whether there is such a service, and a bus to run it on, on this machine at all.
    static bool isPossible();

    /// The process's own; the first call makes it.
    static PrivateDesktop& ofThisProcess();

    ~PrivateDesktop();
    PrivateDesktop(const PrivateDesktop&) = delete;
    PrivateDesktop& operator=(const PrivateDesktop&) = delete;

    /// What the service has stored of a local book; another text after each write of it.
    std::string stored(const std::string& book) const;

    /// Ends the bus, as the end of a session does.
    void endBus();

    /// Sends a signal to the processes that serve the address books. Returns to how many.
    std::size_t signalFactories(int signal) const;

private:
    PrivateDesktop();
    void startBus(const std::filesystem::path& configuration);
    std::vector<pid_t> processes() const;

    TemporaryFolder folder_;
    pid_t bus_ = -1;
};

}  // namespace dunmora::test
