#include "adapters/vcard/ParameterMemory.h"

#include "adapters/vcard/KeptText.h"
#include "adapters/vcard/PhoneTypes.h"
#include "adapters/vcard/PropertyTypes.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/Utf8.h"

#include <cstring>

namespace dunmora {

namespace {

/// A place below 256 for the list. Depends on its size and on the eight bytes at either end, which
/// is where the lists of an address book differ.
std::size_t placeOf(std::string_view parameters)
{
    std::uint64_t front = 0;
    std::uint64_t back = 0;
    if (parameters.size() >= sizeof front) {
        std::memcpy(&front, parameters.data(), sizeof front);
        std::memcpy(&back, parameters.data() + parameters.size() - sizeof back, sizeof back);
    } else {
        std::memcpy(&front, parameters.data(), parameters.size());
    }
    // The multiplier is 2^64 divided by the golden ratio, which spreads the bits upwards.
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
    return ((front * kSpread ^ back ^ parameters.size()) * kSpread) >> 56U;
}

}  // namespace

std::optional<std::string_view> ParameterMemory::phoneLabel(std::string_view parameters)
{
    auto& known = of(parameters);
    if (!known.hasLabel) {
        PhoneTypes types;
        forEachType(parameters, [&](std::string_view type) { types.add(type); });
        known.label = types.label();
        if (known.label && !isUtf8(*known.label)) {
            known.label = keepText(toUtf8(*known.label, ""), memory_);
        }
        known.hasLabel = true;
    }
    return known.label;
}

ParameterMemory::Known& ParameterMemory::of(std::string_view parameters)
{
    auto& place = places_[placeOf(parameters)];
    if (place == 0) {
        known_.emplace_back();
        place = static_cast<std::uint16_t>(known_.size());
    } else if (known_[place - 1U].parameters == parameters) {
        return known_[place - 1U];
    }
    auto& known = known_[place - 1U];
    known = {parameters,
             {valueEncoding(parameters), parameters.find('"') != std::string_view::npos},
             false,
             std::nullopt};
    return known;
}

}  // namespace dunmora
