#pragma once

#include "base/Settings.h"
#include "engine/ContactRecord.h"

#include <array>
#include <string>
#include <string_view>

namespace dunmora {

/// A field that can be part of the match key: its key in a contact record and its flag in the
/// preferences.
struct MatchField {
    std::string_view key;
    bool (Settings::*isOn)() const;
    void (Settings::*turn)(bool on);
};

/// Every match field, in the order in which the values stand in a match key.
inline constexpr std::array<MatchField, 6> kMatchFields{{
    {kContactNickname, &Settings::filterNickname, &Settings::setFilterNickname},
    {kContactFirstName, &Settings::filterFirstname, &Settings::setFilterFirstname},
    {kContactLastName, &Settings::filterLastname, &Settings::setFilterLastname},
    {kContactHome, &Settings::filterHome, &Settings::setFilterHome},
    {kContactWork, &Settings::filterWork, &Settings::setFilterWork},
    {kContactMobile, &Settings::filterMobile, &Settings::setFilterMobile},
}};

/// Puts the contact's value of a chosen field at the end of the match key.
inline void appendToMatchKey(std::string& key, const ContactRecord& contact,
                             const MatchField& field)
{
    key += contact.text(field.key);
    key += '-';
}

}  // namespace dunmora
