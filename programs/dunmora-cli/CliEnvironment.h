#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace dunmora {

class AddressBook;
class Bundle;
class UserDefaults;

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
};

}  // namespace dunmora
