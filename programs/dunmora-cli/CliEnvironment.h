#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

class AddressBook;
class Bundle;
class UserDefaults;

/// One of the address books that the user's desktop keeps.
struct DesktopBook {
    std::string uid;
    std::string name;
    std::string kind;
    /// None where the book could not be read, and why, in a sentence.
    std::optional<bool> isWritable;
    std::optional<std::size_t> people;
    std::string failure;
};

/// All that the terminal program touches of the machine it runs on.
struct CliEnvironment {
    /// Makes the address book that the user named; it need not read anything yet.
    std::function<std::unique_ptr<AddressBook>(const std::string& name)> openAddressBook;
    UserDefaults& userDefaults;
    Bundle& bundle;

    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool inIsTerminal = false;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    /// Columns of the terminal behind `err`.
    std::size_t terminalWidth = 80;
    /// Whether a terminal may be given colours.
    bool wantsColour = false;

    /// Lists the address books of the user's desktop. Errors: PlatformError.
    std::function<std::vector<DesktopBook>()> listDesktopBooks = nullptr;
};

}  // namespace dunmora
