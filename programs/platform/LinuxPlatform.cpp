#include "adapters/defaults/IniUserDefaults.h"
#include "adapters/defaults/IniWindowMemory.h"
#include "adapters/eds/EdsBooks.h"
#include "adapters/eds/EdsModule.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "programs/platform/PlatformChoice.h"

#include <cstdlib>
#include <utility>

namespace dunmora {

namespace {

bool isSet(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing of ours changes the environment
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

}  // namespace

std::string_view systemAddressBookName()
{
    return kEdsName;
}

std::string_view severalAddressBooksName()
{
    return kEdsName;
}

std::string_view systemAddressBookHelp()
{
    return "eds: for all address books of the desktop, or eds:UID for one of them";
}

std::string_view systemAddressBookLibrary()
{
    return hasContactModule() ? "libebook" : "";
}

std::string systemAddressBookProblem()
{
    return edsBooksProblem();
}

std::vector<DesktopBook> listDesktopBooks()
{
    return listEdsBooks();
}

std::vector<DesktopBook> listDesktopBookNames()
{
    return listEdsBookNames();
}

OpenedBook openAddressBook(const std::filesystem::path& path)
{
    if (isEdsName(path.string())) {
        return openEdsBook(path.string());
    }
    const auto book = std::make_shared<VCardAddressBook>(path);
    return {book, book, book};
}

std::unique_ptr<UserDefaults> userDefaults(UserDefaults::OnFailure onFailure)
{
    return std::make_unique<IniUserDefaults>(IniUserDefaults::perUserFile(), std::move(onFailure));
}

std::unique_ptr<WindowMemory> windowMemory()
{
    return std::make_unique<IniWindowMemory>(IniUserDefaults::perUserFile());
}

bool hasDisplay()
{
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

}  // namespace dunmora
