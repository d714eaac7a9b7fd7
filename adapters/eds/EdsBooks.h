#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class AddressBook;
class ContactService;

/// The name under which all of the desktop's address books are opened at once; with a book's uid
/// behind it, that one is.
inline constexpr std::string_view kEdsName = "eds:";

/// Whether the name is that of an address book of the desktop: "eds:" or "eds:UID".
bool isEdsName(std::string_view name);

/// The address book with such a name. The service is first asked by the first listing.
/// Errors: PlatformError when the program has no module for these books.
std::unique_ptr<AddressBook> openEdsBook(std::string_view name);

/// Whether this program can open the desktop's address books here and now.
/// Thread: any; blocks for a moment. Errors: none.
bool hasEdsBooks();

/// One of the desktop's address books, in a few words.
struct EdsBookSummary {
    std::string uid;
    std::string name;
    std::string kind;
    /// None where the book could not be read, and why.
    std::optional<bool> isWritable;
    std::optional<std::size_t> people;
    std::string failure;
};

/// All address books that the user has enabled.
/// Errors: PlatformError when there is no module for them, or the service cannot be reached.
std::vector<EdsBookSummary> listEdsBooks();
std::vector<EdsBookSummary> listEdsBooks(ContactService& service);

}  // namespace dunmora
