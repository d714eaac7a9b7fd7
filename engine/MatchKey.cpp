#include "engine/MatchKey.h"

#include "base/Settings.h"

namespace dunmora {

MatchFieldChoice chosenMatchFields()
{
    MatchFieldChoice choice;
    for (const auto* const field : kMatchFields) {
        choice.set(field->match->place, Settings::settings().isOn(*field->match));
    }
    return choice;
}

std::string matchKey(const ContactRecord& contact, const MatchFieldChoice& choice)
{
    std::string key;
    for (const auto* const field : kMatchFields) {
        if (choice.test(field->match->place)) {
            key += contact.text(field->key);
            key += '-';
        }
    }
    return key;
}

}  // namespace dunmora
