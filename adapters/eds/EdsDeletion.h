#pragma once

#include "adapters/eds/ContactService.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora {

/// A person to be removed, and the card that the user reviewed.
struct EdsRemoval {
    std::string_view contact;
    std::string_view reviewed;
};

/// Removes people from the service's books as far as possible, and counts the outcomes.
///
/// Compares each card with the reviewed one right before the removal, and removes nobody whose card
/// differs. After a failed removal, finds out who is still in the book and tries those one by one.
/// Gives up on a book that cannot be read or keeps refusing, and continues with the next one. Tries
/// nothing more after a timeout.
///
/// Thread: one at a time. Errors: none; see `failure`.
class EdsDeletion final {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// The people of a book, with their whole cards.
    struct Removed {
        ServiceBook book;
        std::vector<ContactText> people;
    };

    /// `service` must outlive the deletion. `pictures` is the folder in which the service keeps the
    /// pictures of local books; `now` is the clock.
    explicit EdsDeletion(ContactService& service, std::filesystem::path pictures = {},
                         std::function<Time()> now = std::chrono::steady_clock::now)
        : service_(service), pictures_(std::move(pictures)), now_(std::move(now))
    {
    }

    /// Removes these people of one book, `batchSize` of them per call to the service.
    void remove(const ServiceBook& book, std::size_t batchSize,
                const std::vector<EdsRemoval>& people);

    /// The people who have been removed, or may have been, book by book.
    const std::vector<Removed>& removed() const { return removedPeople_; }

    /// What happened to how many people, why, and what to do, in sentences for the user. Empty when
    /// everybody is gone.
    std::string failure() const;

private:
    using Batch = std::vector<EdsRemoval>;

    /// What a book now holds of the people of a batch.
    struct Comparison {
        Batch absent;
        std::size_t changed = 0;
        Batch unchanged;
    };

    void removeBatch(const ServiceBook& book, const Batch& batch);
    void handleFailure(const ServiceBook& book, const Batch& batch,
                       const std::vector<ContactText>& whole, const RemovalResult& result);
    std::optional<Comparison> compare(const ServiceBook& book, const Batch& batch);
    void remember(const Batch& people, const std::vector<ContactText>& whole);
    bool isHopeless() const;
    void giveUp(const ServiceBook& book, const BookContent& content);
    void addReason(const ServiceBook& book, const std::string& reason);

    ContactService& service_;
    std::filesystem::path pictures_;
    std::function<Time()> now_;
    std::size_t asked_ = 0;
    std::size_t removed_ = 0;
    std::size_t gone_ = 0;
    std::size_t changed_ = 0;
    std::size_t left_ = 0;
    std::size_t unknown_ = 0;
    std::size_t untried_ = 0;
    std::vector<Removed> removedPeople_;
    // A call has timed out.
    bool hasStopped_ = false;
    // The members below are about the current book.
    bool isGivenUp_ = false;
    std::size_t refusalsInARow_ = 0;
    Time lastSuccess_;
    std::vector<std::string> reasons_;
};

}  // namespace dunmora
