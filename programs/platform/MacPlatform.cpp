#include "adapters/macos/MacAddressBook.h"
#include "adapters/macos/MacUserDefaults.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "programs/platform/PlatformChoice.h"

namespace dunmora {

std::string_view systemAddressBookName()
{
    return kMacAddressBookName;
}

std::string_view systemAddressBookHelp()
{
    return "macos: for the Mac's own address book, which is the default";
}

std::string_view systemAddressBookLibrary()
{
    return "";
}

bool hasSystemAddressBook()
{
    // Whether the user lets the program see it is only known once it is read.
    return true;
}

std::unique_ptr<AddressBook> openAddressBook(const std::filesystem::path& path)
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
