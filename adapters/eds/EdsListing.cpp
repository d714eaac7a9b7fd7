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
    const auto& cards = cards_.emplace_back(contacts);
    auto& uids = uids_.emplace_back();
    uids.reserve(contacts.size());
    for (auto& contact : contacts) {
        uids.push_back(std::move(contact.uid));
    }
    // Frees the texts that the joined cards have copied before people are made of them.
    contacts = {};

    const auto expected = people_.size() + uids.size();
    people_.reserve(expected);
    entries_.reserve(expected);
    positions_.reserve(expected);
    std::size_t skipped = 0;
    const auto contents = cards.read(reader_);
    for (std::size_t i = 0; i < contents.size(); ++i) {
        const auto& [person, hasList] = contents[i];
        const auto id = person ? idOf(book, uids[i]) : std::string_view();
        // A removal names the person by this id, so nobody else may have it.
        if (!person || uids[i].empty() || !positions_.try_emplace(id, people_.size()).second) {
            skipped += hasList ? 0 : 1;
            continue;
        }
        people_.push_back(*person);
        people_.back().uid = id;
        people_.back().source = &source;
        entries_.push_back({bookPosition, uids[i], cards.card(i)});
    }
    return skipped;
}

std::size_t EdsListing::positionOf(const Person& person) const
{
    const std::less<> isBefore;
    const auto* first = people_.data();
    if (isBefore(&person, first) || !isBefore(&person, first + people_.size())) {
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
