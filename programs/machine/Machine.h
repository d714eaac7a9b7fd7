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

/// The name that stands for the user's own address book where others have a path.
std::string_view ownAddressBookName();

/// What to say about that name, and others like it, behind what a path may be.
std::string_view ownAddressBookHelp();

/// What the user's own address book is reached with, and for what, as a user reads it; empty where
/// that comes with the machine or is not installed.
std::string_view ownAddressBookLibrary();

/// Whether the user's own address book can be opened here and now. Blocks for a moment.
bool hasOwnAddressBook();

/// The address book of that name, or under that path; nothing is read yet.
/// Errors: PlatformError when there can be no such address book.
std::unique_ptr<AddressBook> addressBookAt(const std::filesystem::path& path);

/// The user's preferences.
std::unique_ptr<UserDefaults> userDefaults();

/// Whether windows can be shown.
bool hasDisplay();

}  // namespace dunmora
