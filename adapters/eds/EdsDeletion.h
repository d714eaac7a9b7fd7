#pragma once

#include "adapters/eds/ContactService.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
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
/// removal fails the book is asked who is still there, and those are tried one by one. Once nobody
/// answers in time nothing more is tried.
///
/// Thread: one at a time. Errors: none; `failure` tells.
class EdsDeletion final {
public:
    /// The service must outlive it.
    explicit EdsDeletion(ContactService& service) : service_(service) {}

    /// Removes these people of one book, so many at once.
    void remove(const ServiceBook& book, std::size_t batchSize,
                const std::vector<EdsRemoval>& people);

    /// How many were removed, were gone already, have changed and are still there, and why, for the
    /// user; empty when everybody is gone.
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
    void tell(const ServiceBook& book, const std::string& reason);

    ContactService& service_;
    std::size_t asked_ = 0;
    std::size_t removed_ = 0;
    std::size_t gone_ = 0;
    std::size_t changed_ = 0;
    std::size_t left_ = 0;
    std::size_t unknown_ = 0;
    bool hasStopped_ = false;
    std::size_t refusalsInARow_ = 0;
    std::vector<std::string> reasons_;
};

}  // namespace dunmora
