#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

namespace dunmora {

class AddressBook;
class UserDefaults;

/// What the programs choose otherwise on another kind of machine. The build takes the choice of the
/// machine that it builds for.
/// Thread: the main thread.

/// The name that stands for the user's own address book where others have a path; empty where the
/// machine keeps none.
std::string_view ownAddressBookName();

/// The address book of that name, or under that path; nothing is read yet.
/// Errors: PlatformError when there can be no such address book.
std::unique_ptr<AddressBook> addressBookAt(const std::filesystem::path& path);

/// The user's preferences.
std::unique_ptr<UserDefaults> userDefaults();

/// Whether windows can be shown.
bool hasDisplay();

}  // namespace dunmora
