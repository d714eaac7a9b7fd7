#include "engine/MatchKey.h"

#include "base/Settings.h"

#include <array>
#include <cstddef>

namespace dunmora {

namespace {

/// Follows each value in a key. It can also be part of a value.
constexpr char kSeparator = '-';

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
            key += kSeparator;
        }
    }
}

std::string matchKey(const ContactRecord& contact, const MatchFieldChoice& choice)
{
    std::string key;
    appendMatchKey(key, contact, choice);
    return key;
}

bool hasMatchKey(const ContactRecord& contact, const MatchFieldChoice& choice, std::string_view key)
{
    for (const auto* const field : kMatchFields) {
        if (choice.test(field->match->place)) {
            const auto text = contact.textAt(kTextPlaces[field->match->place]);
            if (!key.starts_with(text) || !key.substr(text.size()).starts_with(kSeparator)) {
                return false;
            }
            key.remove_prefix(text.size() + 1);
        }
    }
    return key.empty();
}

}  // namespace dunmora
