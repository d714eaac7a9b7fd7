#include "adapters/eds/EdsBooks.h"

#include "adapters/eds/EdsAddressBook.h"
#include "adapters/eds/EdsListing.h"
#include "adapters/eds/EdsModule.h"
#include "platform/PlatformError.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace dunmora {

bool isEdsName(std::string_view name)
{
    return name.starts_with(kEdsName);
}

OpenedBook openEdsBook(std::string_view name)
{
    name.remove_prefix(kEdsName.size());
    const auto book = std::make_shared<EdsAddressBook>(
        loadContactService(), name.empty() ? std::nullopt : std::optional(std::string(name)));
    return {book, book, book};
}

std::string edsBooksProblem()
{
    try {
        return loadContactService()->isAvailable()
                   ? ""
                   : "This desktop has no address books that Dunmora can read: Evolution Data "
                     "Server is not available.";
    } catch (const PlatformError& error) {
        return error.what();
    }
}

std::vector<DesktopBook> listEdsBooks()
{
    return listEdsBooks(*loadContactService());
}

std::vector<DesktopBook> listEdsBooks(ContactService& service)
{
    const auto books = service.books();
    std::vector<std::string> uids;
    uids.reserve(books.size());
    for (const auto& book : books) {
        uids.push_back(book.uid);
    }
    // The service could send its uids alone. But a listing of the book must have as many people,
    // and only the cards show which entries are lists or cannot be read.
    auto contents = service.read(uids);

    std::vector<DesktopBook> summaries;
    summaries.reserve(books.size());
    for (std::size_t i = 0; i < books.size(); ++i) {
        auto& content = contents.at(i);
        DesktopBook summary{books[i].uid, books[i].name, books[i].kind, {}, {}, {}};
        if (content.failure.empty()) {
            EdsListing listing(PersonIds::OfOneBook);
            listing.add(books[i], std::move(content.people));
            summary.isWritable = content.isWritable;
            summary.people = listing.people().size();
        } else {
            summary.failure = content.failure;
        }
        summaries.push_back(std::move(summary));
    }
    return summaries;
}

std::vector<DesktopBook> listEdsBookNames()
{
    return listEdsBookNames(*loadContactService());
}

std::vector<DesktopBook> listEdsBookNames(ContactService& service)
{
    std::vector<DesktopBook> names;
    for (const auto& book : service.books()) {
        names.push_back({book.uid, book.name, book.kind, {}, {}, {}});
    }
    return names;
}

}  // namespace dunmora
