#include "adapters/macos/MacAddressBook.h"
#include "adapters/macos/MacUserDefaults.h"
#include "adapters/macos/MacWindowMemory.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "platform/PlatformError.h"
#include "programs/platform/PlatformChoice.h"

#include <utility>

namespace dunmora {

std::string_view systemAddressBookName()
{
    return kMacAddressBookName;
}

std::string_view severalAddressBooksName()
{
    return "";
}

std::string_view systemAddressBookHelp()
{
    return "macos: for the Mac's own address book";
}

std::string_view systemAddressBookLibrary()
{
    return "";
}

std::string systemAddressBookProblem()
{
    // Only reading it shows whether the user gives the program access.
    return "";
}

std::vector<DesktopBook> listDesktopBooks()
{
    throw PlatformError("A Mac has one address book only. Its name is macos:.");
}

std::vector<DesktopBook> listDesktopBookNames()
{
    return listDesktopBooks();
}

OpenedBook openAddressBook(const std::filesystem::path& path)
{
    if (path == kMacAddressBookName) {
        const auto book = std::make_shared<MacAddressBook>();
        return {book, book, book};
    }
    const auto book = std::make_shared<VCardAddressBook>(path);
    return {book, book, book};
}

std::unique_ptr<UserDefaults> userDefaults(UserDefaults::OnFailure onFailure)
{
    return std::make_unique<MacUserDefaults>(std::move(onFailure));
}

std::unique_ptr<WindowMemory> windowMemory()
{
    return std::make_unique<MacWindowMemory>();
}

bool hasDisplay()
{
    return true;
}

}  // namespace dunmora
