#include "adapters/eds/EdsDeletion.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace dunmora {

namespace {

using Outcome = RemovalAnswer::Outcome;

std::vector<std::string> uidsOf(const std::vector<EdsRemoval>& people)
{
    std::vector<std::string> uids;
    uids.reserve(people.size());
    for (const auto& person : people) {
        uids.emplace_back(person.contact);
    }
    return uids;
}

/// "1 was", "2 were".
std::string counted(std::size_t count, const std::string& one, const std::string& several)
{
    return std::to_string(count) + " " + (count == 1 ? one : several);
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
        tell(book, "It was not tried any more.");
        return;
    }
    isGivenUp_ = false;
    refusalsInARow_ = 0;
    lastSuccess_ = now_();
    const auto step = std::max<std::size_t>(batchSize, 1);
    for (std::size_t begin = 0; begin < people.size(); begin += step) {
        const auto end = std::min(begin + step, people.size());
        removeBatch(book, {people.begin() + static_cast<std::ptrdiff_t>(begin),
                           people.begin() + static_cast<std::ptrdiff_t>(end)});
    }
}

bool EdsDeletion::isHopeless() const
{
    // A server that has refused so many one after the other, or for so long, will refuse the rest
    // too, and a round trip for each could take hours.
    constexpr std::size_t kMostRefusals = 10;
    constexpr std::chrono::seconds kPatience(8);
    return hasStopped_ || isGivenUp_ || refusalsInARow_ >= kMostRefusals ||
           (refusalsInARow_ > 0 && now_() - lastSuccess_ > kPatience);
}

void EdsDeletion::giveUp(const ServiceBook& book, const BookContent& content)
{
    isGivenUp_ = true;
    hasStopped_ = hasStopped_ || content.isUnanswered;
    tell(book, content.failure);
}

void EdsDeletion::removeBatch(const ServiceBook& book, const Batch& batch)
{
    const auto before = isHopeless() ? std::nullopt : look(book, batch);
    if (!before) {
        untried_ += batch.size();
        return;
    }
    gone_ += before->absent;
    changed_ += before->changed;
    if (before->unchanged.empty()) {
        return;
    }
    const auto answer = service_.remove(book.uid, uidsOf(before->unchanged));
    if (answer.outcome == Outcome::Removed) {
        removed_ += before->unchanged.size();
        refusalsInARow_ = 0;
        lastSuccess_ = now_();
    } else {
        settleFailed(book, before->unchanged, answer);
    }
}

void EdsDeletion::settleFailed(const ServiceBook& book, const Batch& batch,
                               const RemovalAnswer& answer)
{
    if (answer.outcome == Outcome::Changed && batch.size() == 1) {
        ++changed_;
        return;
    }
    const bool mayHappenYet = answer.outcome == Outcome::NoAnswer;
    hasStopped_ = hasStopped_ || mayHappenYet;
    const auto after = look(book, batch);
    if (!after) {
        unknown_ += batch.size();
        tell(book, answer.reason);
        return;
    }
    // A book that misses somebody, or has another version, has removed nobody: others were faster.
    // After any other failure whoever is gone went with our removal, of which only the answer was
    // lost.
    const bool removedNobody =
        answer.outcome == Outcome::NoSuchPerson || answer.outcome == Outcome::Changed;
    (removedNobody ? gone_ : removed_) += after->absent;
    changed_ += after->changed;
    if (mayHappenYet) {
        unknown_ += after->unchanged.size();
        tell(book, answer.reason);
    } else if (batch.size() > 1) {
        for (const auto& person : after->unchanged) {
            removeBatch(book, {person});
        }
    } else if (!after->unchanged.empty()) {
        left_ += after->unchanged.size();
        ++refusalsInARow_;
        tell(book, answer.reason);
    }
}

std::optional<EdsDeletion::Sighting> EdsDeletion::look(const ServiceBook& book, const Batch& batch)
{
    const auto found = service_.find(book.uid, uidsOf(batch));
    if (!found.failure.empty()) {
        giveUp(book, found);
        return std::nullopt;
    }
    std::unordered_map<std::string_view, std::string_view> cards;
    for (const auto& contact : found.people) {
        cards.emplace(contact.uid, contact.card);
    }
    Sighting sighting;
    for (const auto& person : batch) {
        const auto card = cards.find(person.contact);
        if (card == cards.end()) {
            ++sighting.absent;
        } else if (card->second != person.reviewed) {
            ++sighting.changed;
        } else {
            sighting.unchanged.push_back(person);
        }
    }
    return sighting;
}

void EdsDeletion::tell(const ServiceBook& book, const std::string& reason)
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
    auto text = "Not everybody was deleted. Of " + counted(asked_, "person ", "people ") +
                counted(removed_, "was deleted, ", "were deleted, ") +
                counted(gone_, "was gone already, ", "were gone already, ") +
                counted(changed_, "has changed meanwhile and was left alone, ",
                        "have changed meanwhile and were left alone, ") +
                counted(left_, "is still there.", "are still there.");
    if (untried_ > 0) {
        text += " " + counted(untried_, "was not tried.", "were not tried.");
    }
    if (unknown_ > 0) {
        text += " What became of " + counted(unknown_, "other", "others") + " is not known.";
    }
    for (const auto& reason : reasons_) {
        text += reason;
    }
    return text;
}

}  // namespace dunmora
