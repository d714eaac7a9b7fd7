#pragma once

#include "adapters/eds/ContactService.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora {

/// A person to be removed, and the card that the user has reviewed.
struct EdsRemoval {
    std::string_view contact;
    std::string_view reviewed;
};

/// Removes people from the service's books as far as it can be done, and counts what became of
/// them.
///
/// Nobody is removed whose card, right before it, is not what the user has reviewed. Where a
/// removal fails the book is asked who is still there, and those are tried one by one. A book that
/// cannot be read, or refuses again and again, is given up, and the next one is tried. Once nobody
/// answers in time nothing more is tried.
///
/// Thread: one at a time. Errors: none; `failure` tells.
class EdsDeletion final {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// The service must outlive it. `now` tells the time.
    explicit EdsDeletion(ContactService& service,
                         std::function<Time()> now = std::chrono::steady_clock::now)
        : service_(service), now_(std::move(now))
    {
    }

    /// Removes these people of one book, so many at once.
    void remove(const ServiceBook& book, std::size_t batchSize,
                const std::vector<EdsRemoval>& people);

    /// How many were removed, were gone already, have changed and are still there, and why, for the
    /// user; also of how many that is not known and how many were not tried. Empty when everybody
    /// is gone.
    std::string failure() const;

private:
    using Batch = std::vector<EdsRemoval>;

    /// What a book says about the people of a batch.
    struct Sighting {
        std::size_t absent = 0;
        std::size_t changed = 0;
        Batch unchanged;
    };

    void removeBatch(const ServiceBook& book, const Batch& batch);
    void settleFailed(const ServiceBook& book, const Batch& batch, const RemovalAnswer& answer);
    std::optional<Sighting> look(const ServiceBook& book, const Batch& batch);
    bool isHopeless() const;
    void giveUp(const ServiceBook& book, const BookContent& content);
    void tell(const ServiceBook& book, const std::string& reason);

    ContactService& service_;
    std::function<Time()> now_;
    std::size_t asked_ = 0;
    std::size_t removed_ = 0;
    std::size_t gone_ = 0;
    std::size_t changed_ = 0;
    std::size_t left_ = 0;
    std::size_t unknown_ = 0;
    std::size_t untried_ = 0;
    // Nobody answers any more.
    bool hasStopped_ = false;
    // What follows is about the book that is being tried.
    bool isGivenUp_ = false;
    std::size_t refusalsInARow_ = 0;
    Time lastSuccess_;
    std::vector<std::string> reasons_;
};

}  // namespace dunmora
