#include "adapters/eds/EdsDeletion.h"

#include "adapters/eds/StoredPictures.h"
#include "text/Counted.h"
#include "text/TextHash.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace dunmora {

namespace {

using Outcome = RemovalResult::Outcome;

std::vector<std::string> uidsOf(const std::vector<EdsRemoval>& people)
{
    std::vector<std::string> uids;
    uids.reserve(people.size());
    for (const auto& person : people) {
        uids.emplace_back(person.contact);
    }
    return uids;
}

}  // namespace

void EdsDeletion::remove(const ServiceBook& book, std::size_t batchSize,
                         const std::vector<EdsRemoval>& people)
{
    if (people.empty()) {
        return;
    }
    asked_ += people.size();
    if (hasStopped_) {
        untried_ += people.size();
        addReason(book, "The deletion stopped before this book.");
        return;
    }
    isGivenUp_ = false;
    refusalsInARow_ = 0;
    lastSuccess_ = now_();
    removedPeople_.push_back({book, {}});
    const auto step = std::max<std::size_t>(batchSize, 1);
    for (std::size_t begin = 0; begin < people.size(); begin += step) {
        const auto end = std::min(begin + step, people.size());
        removeBatch(book, {people.begin() + static_cast<std::ptrdiff_t>(begin),
                           people.begin() + static_cast<std::ptrdiff_t>(end)});
    }
}

bool EdsDeletion::isHopeless() const
{
    // A server that has refused this many in a row, or for this long, will refuse the rest too, and
    // a round trip for each could take hours.
    constexpr std::size_t kMostRefusals = 10;
    constexpr std::chrono::seconds kPatience(8);
    return hasStopped_ || isGivenUp_ || refusalsInARow_ >= kMostRefusals ||
           (refusalsInARow_ > 0 && now_() - lastSuccess_ > kPatience);
}

void EdsDeletion::giveUp(const ServiceBook& book, const BookContent& content)
{
    isGivenUp_ = true;
    hasStopped_ = hasStopped_ || content.hasTimedOut;
    addReason(book, content.failure);
}

void EdsDeletion::removeBatch(const ServiceBook& book, const Batch& batch)
{
    const auto before = isHopeless() ? std::nullopt : compare(book, batch);
    if (!before) {
        untried_ += batch.size();
        return;
    }
    gone_ += before->absent.size();
    changed_ += before->changed;
    if (before->unchanged.empty()) {
        return;
    }
    // The service deletes the stored pictures with the people.
    std::vector<ContactText> whole;
    whole.reserve(before->unchanged.size());
    for (const auto& person : before->unchanged) {
        whole.push_back({std::string(person.contact), wholeCard(book, person.reviewed, pictures_)});
    }
    const auto result = service_.remove(book.uid, uidsOf(before->unchanged));
    if (result.outcome == Outcome::Removed) {
        removed_ += before->unchanged.size();
        remember(before->unchanged, whole);
        refusalsInARow_ = 0;
        lastSuccess_ = now_();
    } else {
        handleFailure(book, before->unchanged, whole, result);
    }
}

void EdsDeletion::handleFailure(const ServiceBook& book, const Batch& batch,
                                const std::vector<ContactText>& whole, const RemovalResult& result)
{
    if (result.outcome == Outcome::Changed && batch.size() == 1) {
        ++changed_;
        return;
    }
    const bool mayHappenYet = result.outcome == Outcome::NoReply;
    hasStopped_ = hasStopped_ || mayHappenYet;
    const auto after = compare(book, batch);
    if (!after) {
        unknown_ += batch.size();
        remember(batch, whole);
        addReason(book, result.reason);
        return;
    }
    // A removal that fails because somebody is missing or has changed removes nobody, so others
    // removed those who are gone. After any other failure this removal did, and only the reply was
    // lost.
    const bool removedNobody =
        result.outcome == Outcome::NoSuchPerson || result.outcome == Outcome::Changed;
    (removedNobody ? gone_ : removed_) += after->absent.size();
    if (!removedNobody) {
        remember(after->absent, whole);
    }
    changed_ += after->changed;
    if (mayHappenYet) {
        unknown_ += after->unchanged.size();
        remember(after->unchanged, whole);
        addReason(book, result.reason);
    } else if (batch.size() > 1) {
        for (const auto& person : after->unchanged) {
            removeBatch(book, {person});
        }
    } else if (!after->unchanged.empty()) {
        left_ += after->unchanged.size();
        ++refusalsInARow_;
        addReason(book, result.reason);
    }
}

void EdsDeletion::remember(const Batch& people, const std::vector<ContactText>& whole)
{
    for (const auto& person : people) {
        const auto found = std::find_if(whole.begin(), whole.end(), [&](const ContactText& each) {
            return each.uid == person.contact;
        });
        removedPeople_.back().people.push_back(*found);
    }
}

std::optional<EdsDeletion::Comparison> EdsDeletion::compare(const ServiceBook& book,
                                                            const Batch& batch)
{
    const auto found = service_.find(book.uid, uidsOf(batch));
    if (!found.failure.empty()) {
        giveUp(book, found);
        return std::nullopt;
    }
    std::unordered_map<std::string_view, std::string_view, TextHash> cards;
    for (const auto& contact : found.people) {
        cards.emplace(contact.uid, contact.card);
    }
    Comparison comparison;
    for (const auto& person : batch) {
        const auto card = cards.find(person.contact);
        if (card == cards.end()) {
            comparison.absent.push_back(person);
        } else if (card->second != person.reviewed) {
            ++comparison.changed;
        } else {
            comparison.unchanged.push_back(person);
        }
    }
    return comparison;
}

void EdsDeletion::addReason(const ServiceBook& book, const std::string& reason)
{
    auto text = " “" + book.name + "”: " + reason;
    if (std::find(reasons_.begin(), reasons_.end(), text) == reasons_.end()) {
        reasons_.push_back(std::move(text));
    }
}

std::string EdsDeletion::failure() const
{
    if (changed_ + left_ + unknown_ + untried_ == 0) {
        return {};
    }
    std::string outcomes;
    const auto add = [&](std::size_t count, std::string_view one, std::string_view several) {
        if (count > 0) {
            outcomes += (outcomes.empty() ? "" : ", ") + counted(count, one, several);
        }
    };
    add(removed_, "was deleted", "were deleted");
    add(gone_, "was already gone", "were already gone");
    add(changed_, "has changed and was not deleted", "have changed and were not deleted");
    add(left_, "is still there", "are still there");
    add(untried_, "was not tried", "were not tried");
    add(unknown_, "may or may not have been deleted", "may or may not have been deleted");
    auto text = "Not everybody was deleted. Of " + countOfPeople(asked_) + ", " + outcomes + ".";
    for (const auto& reason : reasons_) {
        text += reason;
    }
    text += " Reload the address book before you delete more.";
    return text;
}

}  // namespace dunmora
