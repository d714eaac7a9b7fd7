#pragma once

#include "platform/DesktopBook.h"
#include "platform/OpenedBook.h"
#include "platform/UserDefaults.h"
#include "platform/WindowMemory.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

// What depends on the platform: one source file per platform implements these functions, and the
// build picks one.
// Thread: the main thread.

/// The name that opens the system's own address book, where other books have a path: "eds:".
std::string_view systemAddressBookName();

/// The name that opens several of the system's address books at once, and to which the uid of one
/// can be appended: "eds:". Empty where the system has only one.
std::string_view severalAddressBooksName();

/// The names that open address books of the system, as a part of a sentence for the help.
std::string_view systemAddressBookHelp();

/// The library that reads the system's address book, for the About window. Empty where that library
/// belongs to the system or is not installed.
std::string_view systemAddressBookLibrary();

/// Why the system's address book cannot be opened now, in a sentence for the user; empty if it can.
/// Blocks for a moment.
std::string systemAddressBookProblem();

/// Lists the desktop's address books, each of which has a name like "eds:UID".
/// Errors: PlatformError when they cannot be listed.
std::vector<DesktopBook> listDesktopBooks();

/// The same without reading anybody: only uids, names and kinds.
/// Thread: any; blocks for a few seconds at most. Errors: as above.
std::vector<DesktopBook> listDesktopBookNames();

/// Opens the address book with this name or path; nothing is read yet.
/// Errors: PlatformError when there can be no such address book.
OpenedBook openAddressBook(const std::filesystem::path& path);

/// The user's preferences. `onFailure` may be empty, and may be called before this returns.
std::unique_ptr<UserDefaults> userDefaults(UserDefaults::OnFailure onFailure = {});

/// What windows remember, in the same place as the preferences.
std::unique_ptr<WindowMemory> windowMemory();

/// Whether windows can be shown.
bool hasDisplay();

}  // namespace dunmora
