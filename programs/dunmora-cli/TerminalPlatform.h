#pragma once

#include "platform/AddressBook.h"
#include "platform/Platform.h"
#include "programs/dunmora-cli/PrintingWorkspace.h"
#include "programs/dunmora-cli/TerminalAlert.h"

#include <memory>

namespace dunmora {

struct CliEnvironment;

/// The ports of one command on a terminal, installed for the core from here on.
/// Thread: the main thread; the core may not be asked after its end.
class TerminalPlatform final {
public:
    /// `userDefaults` and what `environment` refers to must outlive it.
    TerminalPlatform(std::unique_ptr<AddressBook> addressBook, UserDefaults& userDefaults,
                     const CliEnvironment& environment);
    ~TerminalPlatform() = default;
    TerminalPlatform(const TerminalPlatform&) = delete;
    TerminalPlatform& operator=(const TerminalPlatform&) = delete;

    AddressBook& addressBook() const { return *addressBook_; }

private:
    std::unique_ptr<AddressBook> addressBook_;
    TerminalAlert alert_;
    PrintingWorkspace workspace_;
    // Refers to those above.
    Platform platform_;
};

}  // namespace dunmora
