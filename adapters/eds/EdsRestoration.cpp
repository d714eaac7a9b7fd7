#include "adapters/eds/EdsRestoration.h"

#include "adapters/eds/EdsCards.h"
#include "adapters/eds/StoredPictures.h"
#include "adapters/vcard/ComparableCard.h"
#include "text/DisplayText.h"
#include "text/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace dunmora {

namespace {

using Outcome = AdditionResult::Outcome;

std::string inBook(const ServiceBook& book, const std::string& reason)
{
    return quotedText(book.name) + ": " + reason;
}

std::string uidTaken(const ServiceBook& book)
{
    return "its UID belongs to another card in " + quotedText(book.name) + ".";
}

}  // namespace

EdsRestoration::People EdsRestoration::restore(const ServiceBook& book, const BookContent& content,
                                               People people)
{
    left_.clear();
    isGivenUp_ = false;
    refusalsInARow_ = 0;
    lastSuccess_ = now_();
    if (!content.failure.empty() || !content.isWritable) {
        hasStopped_ = hasStopped_ || content.hasTimedOut;
        fail(people, quotedText(book.name) + (content.failure.empty()
                                                  ? " is read-only."
                                                  : " could not be read: " + content.failure));
        return people;
    }
    const auto added = peopleToAdd(book, content, std::move(people));
    const auto step = std::max<std::size_t>(content.batchSize, 1);
    for (std::size_t begin = 0; begin < added.size(); begin += step) {
        const auto end = std::min(begin + step, added.size());
        addBatch(book, {added.begin() + static_cast<std::ptrdiff_t>(begin),
                        added.begin() + static_cast<std::ptrdiff_t>(end)});
    }
    return std::move(left_);
}

void EdsRestoration::fail(const People& people, const std::string& reason)
{
    for (const auto& person : people) {
        result_.failures.push_back(quotedText(nameIn(person)) + " was not restored: " + reason);
    }
}

/// The people who are not in the book. Counts and names the others.
EdsRestoration::People EdsRestoration::peopleToAdd(const ServiceBook& book,
                                                   const BookContent& content, People people)
{
    std::unordered_map<std::string, const std::string*, TextHash> byUid;
    for (const auto& person : content.people) {
        byUid.emplace(person.uid, &person.card);
    }
    std::unordered_set<std::string, TextHash> texts;
    if (std::any_of(people.begin(), people.end(),
                    [](const ContactText& person) { return person.uid.empty(); })) {
        for (const auto& person : content.people) {
            texts.insert(comparableCard(wholeCard(book, person.card, pictures_)));
        }
    }
    People added;
    added.reserve(people.size());
    for (auto& person : people) {
        if (person.uid.empty()) {
            if (!texts.insert(comparableCard(person.card)).second) {
                ++result_.present;
                continue;
            }
            person.uid = newUid();
            person.card = withUid(person.card, person.uid);
        }
        // The people themselves stay where they are until the end.
        if (const auto [known, isNew] = byUid.emplace(person.uid, &person.card); isNew) {
            added.push_back(person);
        } else if (isSame(book, *known->second, person)) {
            ++result_.present;
        } else {
            leave(person, uidTaken(book));
        }
    }
    return added;
}

void EdsRestoration::addBatch(const ServiceBook& book, const People& batch)
{
    if (mode_ == CardRestorer::Mode::DryRun) {
        result_.restored += batch.size();
        return;
    }
    if (isHopeless()) {
        for (const auto& person : batch) {
            leave(person, inBook(book, "The restoration stopped before."));
        }
        return;
    }
    std::vector<std::string> cards;
    cards.reserve(batch.size());
    std::vector<const ContactText*> withoutPictures;
    for (const auto& person : batch) {
        auto [card, lost] = withoutLostPictures(person.card, pictures_);
        cards.push_back(std::move(card));
        if (lost > 0) {
            withoutPictures.push_back(&person);
        }
    }
    const auto result = service_.add(book.uid, cards);
    if (result.outcome != Outcome::Added) {
        handleFailure(book, batch, result);
        return;
    }
    result_.restored += batch.size();
    refusalsInARow_ = 0;
    lastSuccess_ = now_();
    for (const auto* const person : withoutPictures) {
        result_.remarks.push_back(quotedText(nameIn(*person)) +
                                  " was restored without a picture: its file no longer exists.");
    }
}

void EdsRestoration::handleFailure(const ServiceBook& book, const People& batch,
                                   const AdditionResult& result)
{
    const bool mayHappenYet = result.outcome == Outcome::NoReply;
    hasStopped_ = hasStopped_ || mayHappenYet;
    std::vector<std::string> uids;
    uids.reserve(batch.size());
    for (const auto& person : batch) {
        uids.push_back(person.uid);
    }
    const auto found = service_.find(book.uid, uids);
    if (!found.failure.empty()) {
        isGivenUp_ = true;
        hasStopped_ = hasStopped_ || found.hasTimedOut;
        for (const auto& person : batch) {
            leaveUnknown(person, inBook(book, result.reason));
        }
        return;
    }
    std::unordered_map<std::string_view, const std::string*, TextHash> cards;
    for (const auto& contact : found.people) {
        cards.emplace(contact.uid, &contact.card);
    }
    for (const auto& person : batch) {
        if (const auto card = cards.find(person.uid); card != cards.end()) {
            if (!isSame(book, *card->second, person)) {
                leave(person, uidTaken(book));
            } else if (result.outcome == Outcome::Exists) {
                // Nobody was added, so somebody else did it.
                ++result_.present;
            } else {
                ++result_.restored;
            }
        } else if (mayHappenYet) {
            leaveUnknown(person, inBook(book, result.reason));
        } else if (batch.size() > 1) {
            addBatch(book, {person});
        } else {
            ++refusalsInARow_;
            leave(person, inBook(book, result.reason));
        }
    }
}

bool EdsRestoration::isSame(const ServiceBook& book, const std::string& stored,
                            const ContactText& added) const
{
    return stored == added.card || comparableCard(wholeCard(book, stored, pictures_)) ==
                                       comparableCard(wholeCard(book, added.card, pictures_));
}

bool EdsRestoration::isHopeless() const
{
    // The same limits as for a deletion: a round trip for each of many people could take hours.
    constexpr std::size_t kMostRefusals = 10;
    constexpr std::chrono::seconds kPatience(8);
    return hasStopped_ || isGivenUp_ || refusalsInARow_ >= kMostRefusals ||
           (refusalsInARow_ > 0 && now_() - lastSuccess_ > kPatience);
}

void EdsRestoration::leave(const ContactText& person, const std::string& reason)
{
    fail({person}, reason);
    left_.push_back(person);
}

void EdsRestoration::leaveUnknown(const ContactText& person, const std::string& reason)
{
    result_.failures.push_back(quotedText(nameIn(person)) +
                               " may or may not have been restored: " + reason);
    left_.push_back(person);
}

}  // namespace dunmora
