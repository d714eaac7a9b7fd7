#pragma once

#include "platform/OpenedBook.h"
#include "platform/Platform.h"
#include "programs/dunmora-cli/PrintingWorkspace.h"
#include "programs/dunmora-cli/TerminalAlert.h"

namespace dunmora {

struct CliEnvironment;

/// The ports of one command on a terminal, which it installs as the platform.
/// Thread: the main thread; the core must not be used after it is destroyed.
class TerminalPlatform final {
public:
    /// The ports of `book` are null for a command without one. `userDefaults` and what
    /// `environment` refers to must outlive the platform.
    TerminalPlatform(OpenedBook book, UserDefaults& userDefaults,
                     const CliEnvironment& environment);
    ~TerminalPlatform() = default;
    TerminalPlatform(const TerminalPlatform&) = delete;
    TerminalPlatform& operator=(const TerminalPlatform&) = delete;

    const OpenedBook& book() const { return book_; }

private:
    OpenedBook book_;
    TerminalAlert alert_;
    PrintingWorkspace workspace_;
    // Refers to those above.
    Platform platform_;
};

}  // namespace dunmora
