#pragma once

#include "adapters/macos/FrameworkPerson.h"
#include "platform/Person.h"
#include "text/TextHash.h"

#include <cstddef>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// The people of one listing of the framework, with views of them for the core.
class PeopleListing final {
public:
    PeopleListing() = default;
    /// `source` is where all of them are from; it must outlive the listing.
    PeopleListing(std::vector<FrameworkPerson> people, const PersonSource& source);
    ~PeopleListing() = default;
    PeopleListing(PeopleListing&&) = default;
    PeopleListing& operator=(PeopleListing&&) = default;
    // The views of a copy would be those of the original.
    PeopleListing(const PeopleListing&) = delete;
    PeopleListing& operator=(const PeopleListing&) = delete;

    std::span<const Person> people() const { return views_; }

    /// The people without a uid, or with another person's: no removal could name them.
    const std::vector<FrameworkPerson>& skipped() const { return skipped_; }

    /// The person of a view of this listing; null for any other view.
    const FrameworkPerson* find(const Person& view) const;
    const FrameworkPerson* find(const std::string& uid) const;

private:
    std::vector<FrameworkPerson> people_;
    std::vector<FrameworkPerson> skipped_;
    std::unordered_map<std::string, std::size_t, TextHash> indexByUid_;
    // The views look into those above.
    std::vector<std::vector<LabelledPhone>> phones_;
    std::vector<Person> views_;
};

}  // namespace dunmora
