#include "engine/MatchKey.h"

#include "base/Settings.h"

#include <array>
#include <cstddef>

namespace dunmora {

namespace {

/// Where a record has the text of each of `kMatchFields`.
constexpr auto kTextPlaces = [] {
    std::array<std::size_t, kMatchFields.size()> places{};
    for (const auto* const field : kMatchFields) {
        places[field->match->place] = textPlace(field->key);
    }
    return places;
}();

}  // namespace

MatchFieldChoice chosenMatchFields()
{
    MatchFieldChoice choice;
    for (const auto* const field : kMatchFields) {
        choice.set(field->match->place, Settings::settings().isOn(*field->match));
    }
    return choice;
}

void appendMatchKey(std::string& key, const ContactRecord& contact, const MatchFieldChoice& choice)
{
    for (const auto* const field : kMatchFields) {
        if (choice.test(field->match->place)) {
            key += contact.textAt(kTextPlaces[field->match->place]);
            key += '-';
        }
    }
}

std::string matchKey(const ContactRecord& contact, const MatchFieldChoice& choice)
{
    std::string key;
    appendMatchKey(key, contact, choice);
    return key;
}

}  // namespace dunmora
