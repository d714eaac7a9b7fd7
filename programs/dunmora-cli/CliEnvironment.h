#pragma once

#include "platform/DesktopBook.h"
#include "platform/OpenedBook.h"
#include "programs/dunmora-cli/Charset.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace dunmora {

class Bundle;
class UserDefaults;

/// What the terminal program uses of the platform and the process.
struct CliEnvironment {
    /// Opens the address book that the user named; it need not read anything yet.
    std::function<OpenedBook(const std::string& name)> openAddressBook;
    UserDefaults& userDefaults;
    Bundle& bundle;

    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool inIsTerminal = false;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    /// Columns of the terminal behind `err`.
    std::size_t errColumns = 80;
    /// Whether a terminal may be given colours.
    bool wantsColour = false;

    /// Lists the address books of the user's desktop. Errors: PlatformError.
    std::function<std::vector<DesktopBook>()> listDesktopBooks = nullptr;
    /// The names that open address books of the system, as a part of a sentence for the help.
    std::string systemBookHelp = {};
    /// The name that opens several address books at once, into which nobody can be restored; a
    /// book's uid may follow it. Empty where there is none.
    std::string severalBooksName = {};
    /// Columns of the terminal behind `out`.
    std::size_t outColumns = 80;
    /// Whether the terminal cannot move its cursor back, so that no line can be drawn again.
    bool isDumbTerminal = false;
    /// Progress of a job that takes less is not shown.
    std::chrono::milliseconds progressDelay{500};

    /// Opens the cards of standard input as a book that can only be read; nothing is read yet.
    std::function<OpenedBook()> openStandardInput = nullptr;
    /// Reads all of standard input, at most this many bytes. Errors: PlatformError.
    std::function<std::string(std::uintmax_t largest)> readStandardInput = nullptr;
    /// For texts on `out`, though not for JSON and CSV, which are data. `err` converts what is
    /// written to it.
    Charset charset = {};
    /// Lists the desktop's address books without reading them. Errors: PlatformError.
    std::function<std::vector<DesktopBook>()> listDesktopBookNames = nullptr;
};

}  // namespace dunmora
