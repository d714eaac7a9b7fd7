#include "adapters/macos/MacAddressBook.h"
#include "adapters/macos/MacUserDefaults.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "programs/machine/Machine.h"

namespace dunmora {

std::string_view ownAddressBookName()
{
    return kMacAddressBookName;
}

std::string_view ownAddressBookHelp()
{
    return "macos: for the Mac's own address book, which is the default";
}

std::string_view ownAddressBookLibrary()
{
    return "";
}

bool hasOwnAddressBook()
{
    // Whether the user lets the program see it is only known once it is read.
    return true;
}

std::unique_ptr<AddressBook> addressBookAt(const std::filesystem::path& path)
{
    if (path == kMacAddressBookName) {
        return std::make_unique<MacAddressBook>();
    }
    return std::make_unique<VCardAddressBook>(path);
}

std::unique_ptr<UserDefaults> userDefaults()
{
    return std::make_unique<MacUserDefaults>();
}

bool hasDisplay()
{
    return true;
}

}  // namespace dunmora
