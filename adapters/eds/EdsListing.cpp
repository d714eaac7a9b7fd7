#include "adapters/eds/EdsListing.h"

#include "adapters/eds/EdsBooks.h"
#include "platform/PlatformError.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace dunmora {

std::size_t EdsListing::add(const ServiceBook& book, std::vector<ContactText> contacts)
{
    const auto bookPosition = books_.size();
    books_.push_back(book);
    const auto& source =
        sources_.emplace_back(PersonSource{std::string(kEdsName) + book.uid, book.name});
    const auto& kept = texts_.emplace_back(std::move(contacts));
    const auto expected = cards_.people.size() + kept.size();
    cards_.people.reserve(expected);
    entries_.reserve(expected);
    positions_.reserve(expected);

    std::size_t skipped = 0;
    for (const auto& contact : kept) {
        const auto count = cards_.people.size();
        const auto groups = cards_.groups.size();
        reader_.read(contact.card, CardReader::Text::Utf8, cards_);
        const bool isPerson = cards_.people.size() == count + 1;
        const auto id = isPerson ? idOf(book, contact.uid) : std::string_view();
        // A removal names the person by this id, so nobody else may have it.
        if (!isPerson || contact.uid.empty() || !positions_.try_emplace(id, count).second) {
            cards_.people.resize(count);
            skipped += cards_.groups.size() == groups ? 1 : 0;
            continue;
        }
        cards_.people.back().uid = id;
        cards_.people.back().source = &source;
        entries_.push_back({bookPosition, contact.uid, contact.card});
    }
    return skipped;
}

std::size_t EdsListing::positionOf(const Person& person) const
{
    const std::less<> isBefore;
    const auto* first = cards_.people.data();
    if (isBefore(&person, first) || !isBefore(&person, first + cards_.people.size())) {
        throw PlatformError("That person is not in the address book.");
    }
    return static_cast<std::size_t>(&person - first);
}

const EdsListing::Entry* EdsListing::find(std::string_view uid) const
{
    const auto found = positions_.find(uid);
    return found == positions_.end() ? nullptr : &entries_[found->second];
}

std::string_view EdsListing::idOf(const ServiceBook& book, std::string_view contact)
{
    if (ids_ == PersonIds::OfOneBook) {
        return contact;
    }
    // No book's id contains the separator, so different people get different ids.
    const auto id = book.uid + "/" + std::string(contact);
    auto* const place = static_cast<char*>(memory_.allocate(id.size(), 1));
    std::copy(id.begin(), id.end(), place);
    return {place, id.size()};
}

}  // namespace dunmora
