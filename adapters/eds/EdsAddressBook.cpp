#include "adapters/eds/EdsAddressBook.h"

#include "adapters/eds/EdsCards.h"
#include "adapters/eds/EdsRestoration.h"
#include "adapters/vcard/CardProperties.h"
#include "adapters/vcard/StoredDifferences.h"
#include "platform/PlatformError.h"
#include "text/Counted.h"

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

std::string quotedName(const ServiceBook& book)
{
    return "“" + book.name + "”";
}

/// Appends a card of the service, which has no line end, to the content of a file.
void appendCard(std::string& content, std::string_view card)
{
    content += card;
    content += card.ends_with('\n') ? "" : "\r\n";
}

}  // namespace

EdsAddressBook::EdsAddressBook(std::unique_ptr<ContactService> service,
                               std::optional<std::string> bookUid, std::filesystem::path pictures)
    : service_(std::move(service)), bookUid_(std::move(bookUid)), pictures_(std::move(pictures))
{
}

std::vector<ServiceBook> EdsAddressBook::chosenBooks() const
{
    auto books = service_->books();
    if (!bookUid_) {
        return books;
    }
    std::erase_if(books, [&](const ServiceBook& book) { return book.uid != *bookUid_; });
    if (books.empty()) {
        throw PlatformError("The desktop has no enabled address book with the id “" + *bookUid_ +
                            "”. Run “dunmora-cli books” to list the address books.");
    }
    return books;
}

EdsAddressBook::Reading EdsAddressBook::read() const
{
    const auto books = chosenBooks();
    std::vector<std::string> uids;
    uids.reserve(books.size());
    for (const auto& book : books) {
        uids.push_back(book.uid);
    }
    auto contents = service_->read(uids);

    Reading reading;
    reading.listing =
        std::make_unique<EdsListing>(bookUid_ ? PersonIds::OfOneBook : PersonIds::OfManyBooks);
    for (std::size_t i = 0; i < books.size(); ++i) {
        auto& content = contents.at(i);
        const auto name = quotedName(books[i]);
        if (!content.failure.empty()) {
            reading.failures.emplace_back(books[i].uid,
                                          name + " could not be read: " + content.failure);
            reading.notes.remarks.push_back(reading.failures.back().second);
            continue;
        }
        if (!content.isWritable && !bookUid_) {
            reading.notes.remarks.push_back(name + " was left out: it is read-only.");
            continue;
        }
        if (!content.isWritable) {
            reading.notes.remarks.push_back(name + " is read-only: nobody can be deleted from it.");
        }
        reading.notes.books.push_back(books[i].name);
        const auto skipped = reading.listing->add(books[i], std::move(content.people));
        reading.batchSizes.push_back(content.isWritable ? content.batchSize : 0);
        if (skipped > 0) {
            reading.notes.cardsSkipped += skipped;
            reading.notes.remarks.push_back(
                std::to_string(skipped) + (skipped == 1 ? " card in " : " cards in ") + name +
                (skipped == 1 ? " was skipped because it has no unique id or no properties. It "
                                "stays in the address book unchanged."
                              : " were skipped because they have no unique id or no properties. "
                                "They stay in the address book unchanged."));
        }
    }
    return reading;
}

std::span<const Person> EdsAddressBook::readPeople()
{
    // Frees the old listings first: two of a large book need not fit into memory.
    current_.reset();
    reviewed_.reset();
    isPending_.clear();
    notes_ = {};
    auto reading = read();
    if (!reading.failures.empty() && reading.listing->books().empty()) {
        throw PlatformError(reading.failures.front().second);
    }
    notes_ = std::move(reading.notes);
    reviewed_ = std::move(reading.listing);
    batchSizes_ = std::move(reading.batchSizes);
    isPending_.assign(reviewed_->people().size(), false);
    return reviewed_->people();
}

std::span<const Person> EdsAddressBook::people()
{
    if (!reviewed_) {
        return readPeople();
    }
    std::fill(isPending_.begin(), isPending_.end(), false);
    auto reading = read();
    // Otherwise the people checked in a book that cannot be read would count as gone.
    for (const auto& book : reviewed_->books()) {
        const auto failure = std::find_if(reading.failures.begin(), reading.failures.end(),
                                          [&](const auto& each) { return each.first == book.uid; });
        if (failure != reading.failures.end()) {
            throw PlatformError(failure->second);
        }
        const auto& books = reading.listing->books();
        if (std::none_of(books.begin(), books.end(),
                         [&](const ServiceBook& each) { return each.uid == book.uid; })) {
            throw PlatformError(quotedName(book) +
                                " was removed, disabled or made read-only after the address book "
                                "was read. " +
                                std::string(kReloadAndTryAgain));
        }
    }
    current_ = std::move(reading.listing);
    batchSizes_ = std::move(reading.batchSizes);
    isPending_.assign(current_->people().size(), false);
    return current_->people();
}

const EdsListing& EdsAddressBook::listing() const
{
    if (!reviewed_) {
        throw PlatformError("That person is not in the address book.");
    }
    return current_ ? *current_ : *reviewed_;
}

void EdsAddressBook::checkWritable(std::size_t book) const
{
    if (batchSizes_[book] == 0) {
        throw PlatformError(quotedName(listing().books()[book]) +
                            " is read-only: nobody can be deleted from it.");
    }
}

void EdsAddressBook::checkWritable(std::span<const std::string> uids) const
{
    for (const auto& uid : uids) {
        if (const auto* const entry = listing().find(uid)) {
            checkWritable(entry->book);
        }
    }
}

void EdsAddressBook::removeRecord(const Person& person)
{
    try {
        const auto position = listing().positionOf(person);
        checkWritable(listing().entry(position).book);
        isPending_[position] = true;
    } catch (const PlatformError&) {
        std::fill(isPending_.begin(), isPending_.end(), false);
        throw;
    }
}

void EdsAddressBook::save()
{
    const auto pending = std::exchange(isPending_, std::vector<bool>(isPending_.size(), false));
    if (std::find(pending.begin(), pending.end(), true) == pending.end()) {
        return;
    }
    const auto& last = listing();
    std::vector<std::vector<EdsRemoval>> removals(last.books().size());
    for (std::size_t i = 0; i < pending.size(); ++i) {
        if (pending[i]) {
            const auto& entry = last.entry(i);
            const auto* const reviewed = reviewed_->find(last.people()[i].uid);
            removals[entry.book].push_back(
                {entry.contact, reviewed != nullptr ? reviewed->card : entry.card});
        }
    }
    EdsDeletion deletion(*service_, pictures_);
    for (std::size_t i = 0; i < removals.size(); ++i) {
        deletion.remove(last.books()[i], batchSizes_[i], removals[i]);
    }
    auto removed = deletion.removed();
    std::erase_if(removed, [](const auto& each) { return each.people.empty(); });
    if (!removed.empty()) {
        deletions_.push_back(std::move(removed));
    }
    if (const auto failure = deletion.failure(); !failure.empty()) {
        throw PlatformError(failure);
    }
}

std::string EdsAddressBook::cards(std::span<const Person* const> people) const
{
    std::string content;
    for (const auto* person : people) {
        const auto& entry = listing().entry(listing().positionOf(*person));
        appendCard(content, wholeCard(listing().books()[entry.book], entry.card, pictures_));
    }
    return content;
}

std::size_t EdsAddressBook::lastRemoved() const
{
    std::size_t count = 0;
    if (!deletions_.empty()) {
        for (const auto& removed : deletions_.back()) {
            count += removed.people.size();
        }
    }
    return count;
}

std::string EdsAddressBook::lastRemovedCards() const
{
    std::string content;
    if (!deletions_.empty()) {
        for (const auto& removed : deletions_.back()) {
            for (const auto& person : removed.people) {
                appendCard(content, person.card);
            }
        }
    }
    return content;
}

Restoration EdsAddressBook::restoreLast()
{
    if (deletions_.empty()) {
        return {};
    }
    auto& deletion = deletions_.back();
    const auto books = service_->books();
    std::vector<std::string> uids;
    for (const auto& removed : deletion) {
        if (std::any_of(books.begin(), books.end(),
                        [&](const ServiceBook& book) { return book.uid == removed.book.uid; })) {
            uids.push_back(removed.book.uid);
        }
    }
    const auto contents = service_->read(uids);

    EdsRestoration restoration(*service_, pictures_, Mode::Write);
    for (auto& [book, people] : deletion) {
        const auto found = std::find(uids.begin(), uids.end(), book.uid);
        if (found == uids.end()) {
            restoration.fail(people, quotedName(book) + " is no longer enabled.");
        } else {
            const auto& content = contents.at(static_cast<std::size_t>(found - uids.begin()));
            people = restoration.restore(book, content, std::move(people));
        }
    }
    std::erase_if(deletion, [](const auto& each) { return each.people.empty(); });
    if (deletion.empty()) {
        deletions_.pop_back();
    }
    return restoration.result();
}

Restoration EdsAddressBook::restore(std::string_view backup, Mode mode)
{
    if (!bookUid_) {
        throw PlatformError("Several address books are open. Choose one of them, such as "
                            "eds:system-address-book, to restore a backup into. Run “dunmora-cli "
                            "books” to list the address books.");
    }
    auto [people, skipped, groups, unreadable] = readBackup(backup);
    if (people.empty() && unreadable == 0) {
        throw PlatformError("The backup contains no people.");
    }
    const auto book = chosenBooks().front();
    const auto content = service_->read({book.uid}).at(0);
    if (!content.failure.empty()) {
        throw PlatformError(quotedName(book) + " could not be read: " + content.failure);
    }
    if (!content.isWritable) {
        throw PlatformError(quotedName(book) + " is read-only.");
    }
    EdsRestoration restoration(*service_, pictures_, mode);
    restoration.restore(book, content, std::move(people));
    auto result = restoration.result();
    if (skipped > 0) {
        result.failures.push_back(
            counted(skipped, "card of the backup was not restored because it breaks off or has no ",
                    "cards of the backup were not restored because they break off or have no ") +
            "properties.");
    }
    if (unreadable > 0) {
        result.failures.push_back(
            counted(unreadable, "card of the backup was not restored because it is not UTF-8.",
                    "cards of the backup were not restored because they are not UTF-8."));
    }
    if (groups > 0) {
        result.remarks.push_back(
            counted(groups, "list of the backup was not restored: only people are.",
                    "lists of the backup were not restored: only people are."));
    }
    return result;
}

std::optional<PersonCard> EdsAddressBook::card(std::string_view uid) const
{
    const auto* const entry = reviewed_ ? reviewed_->find(uid) : nullptr;
    if (entry == nullptr) {
        return std::nullopt;
    }
    auto properties = readProperties(
        wholeCard(reviewed_->books()[entry->book], entry->card, pictures_), CardReader::Text::Utf8);
    if (!properties) {
        return std::nullopt;
    }
    return PersonCard{*std::move(properties), {}, reviewed_->source(*entry)};
}

bool EdsAddressBook::compareStored(std::span<const std::string> uids,
                                   CardDifferences& differences) const
{
    differences.sources.clear();
    std::vector<std::string_view> cards;
    cards.reserve(uids.size());
    for (const auto& uid : uids) {
        const auto* const entry = comparable(uid);
        if (entry == nullptr) {
            return false;
        }
        cards.emplace_back(entry->card);
        differences.sources.push_back(&reviewed_->source(*entry));
    }
    return findStoredDifferences(cards, differences.names);
}

std::optional<std::vector<CardProperty>>
EdsAddressBook::propertiesNamed(std::string_view uid, std::span<const std::string> names) const
{
    const auto* const entry = comparable(uid);
    return entry == nullptr ? std::nullopt
                            : readPropertiesNamed(names, entry->card, CardReader::Text::Utf8);
}

/// The reviewed person, if the card can be compared as it is stored.
const EdsListing::Entry* EdsAddressBook::comparable(std::string_view uid) const
{
    const auto* const entry = reviewed_ ? reviewed_->find(uid) : nullptr;
    const bool hasPictures = entry != nullptr && mayHavePictures(reviewed_->books()[entry->book],
                                                                 entry->card, pictures_);
    return hasPictures ? nullptr : entry;
}

}  // namespace dunmora
