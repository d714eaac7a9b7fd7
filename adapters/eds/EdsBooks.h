#pragma once

#include "platform/DesktopBook.h"
#include "platform/OpenedBook.h"

#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class ContactService;

/// The name that opens all of the desktop's address books at once. Followed by a book's uid it
/// opens that book.
inline constexpr std::string_view kEdsName = "eds:";

/// Whether the name opens an address book of the desktop: "eds:" or "eds:UID".
bool isEdsName(std::string_view name);

/// Opens the address book with such a name. The first listing is the first call to the service.
/// Errors: PlatformError when the module for these books is not installed.
OpenedBook openEdsBook(std::string_view name);

/// Why the desktop's address books cannot be opened now, in a sentence for the user; empty if they
/// can.
/// Thread: any; blocks for a moment. Errors: none.
std::string edsBooksProblem();

/// Lists all address books that the user has enabled.
/// Errors: PlatformError when the module for them is not installed, or the service cannot be
/// reached.
std::vector<DesktopBook> listEdsBooks();
std::vector<DesktopBook> listEdsBooks(ContactService& service);

/// The same, but opens no book: `isWritable`, `people` and `failure` are empty.
/// Thread: any; blocks for a few seconds at most.
std::vector<DesktopBook> listEdsBookNames();
std::vector<DesktopBook> listEdsBookNames(ContactService& service);

}  // namespace dunmora
