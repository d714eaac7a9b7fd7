#pragma once

#include "adapters/vcard/Property.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <string_view>
#include <vector>

namespace dunmora {

/// Remembers what lists of parameters say, such as `;type=HOME;type=VOICE`: an address book has
/// hundreds of thousands of them, but only some dozens of different ones.
///
/// Each list has one of 256 places and replaces the one that had it before. So the memory never
/// grows further, and lists that share a place, even by design, cost no more than parsing each.
///
/// The lists and `memory` must outlive the object; the labels are views into them.
/// Thread: any, one at a time.
class ParameterMemory final {
public:
    explicit ParameterMemory(std::pmr::memory_resource& memory) : memory_(memory) {}

    /// What every property with these parameters has in common.
    struct Meaning {
        ValueEncoding encoding;
        /// A quotation mark is in the list. The ":" that ends the list is then not always the first
        /// one.
        bool hasQuotes = false;
    };

    /// Returns what the parameters mean, each of which has its leading ";".
    Meaning meaning(std::string_view parameters) { return of(parameters).meaning; }

    /// Returns the label of a telephone number with these parameters, in UTF-8 and in the raw form
    /// that `PhoneTypes` describes.
    std::optional<std::string_view> phoneLabel(std::string_view parameters);

private:
    struct Known {
        std::string_view parameters;
        Meaning meaning;
        // Labels are worked out when they are asked for: most lists are not those of a number.
        bool hasLabel = false;
        std::optional<std::string_view> label;
    };

    static constexpr std::size_t kPlaces = 256;

    Known& of(std::string_view parameters);

    std::pmr::memory_resource& memory_;
    std::vector<Known> known_;
    // One more than the index in `known_` of the list that has the place; 0 as long as none has.
    std::array<std::uint16_t, kPlaces> places_{};
};

}  // namespace dunmora
