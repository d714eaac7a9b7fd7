#pragma once

#include "platform/Person.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <optional>
#include <string_view>

namespace dunmora {

/// The keys of a contact record; they are the review table's column identifiers, too.
inline constexpr std::string_view kContactUid = "uid";
inline constexpr std::string_view kContactFirstName = "fname";
inline constexpr std::string_view kContactLastName = "lname";
inline constexpr std::string_view kContactNickname = "nickname";
inline constexpr std::string_view kContactHome = "home";
inline constexpr std::string_view kContactWork = "work";
inline constexpr std::string_view kContactMobile = "mobile";
inline constexpr std::string_view kContactModified = "modified";
inline constexpr std::string_view kContactCheck = "check";

/// Where the value of a contact field comes from. All but Modified (a date) and Check (a Boolean)
/// are texts.
enum class FieldKind { Uid, Name, Phone, Modified, Check };

/// How a field can be part of the match key.
struct MatchPreference {
    /// The place of the field's value in a match key, from 0.
    std::size_t place;
    /// The key of the flag in the user's preferences, and its value until one is stored.
    std::string_view key;
    bool isOnByDefault;
    /// The field's name on the command line.
    std::string_view option;
    /// The field's check box in the interface "FilterWindow".
    std::string_view checkBox;
};

/// A field of a contact record: everything that depends on which fields there are reads it here.
struct ContactField {
    std::string_view key;
    /// The title of its table column.
    std::string_view title;
    FieldKind kind;
    /// The property of a person; null unless the kind is Name.
    OptionalText Person::*name = nullptr;
    /// A word in the labels of the phone numbers, in lower case; empty unless the kind is Phone.
    std::string_view phoneWord = {};
    /// Nullopt for a field that cannot be part of the match key.
    std::optional<MatchPreference> match = std::nullopt;

    constexpr bool isText() const
    {
        return kind == FieldKind::Uid || kind == FieldKind::Name || kind == FieldKind::Phone;
    }
};

/// Every contact field, in the order of the columns and of the properties in written records.
inline constexpr std::array kContactFields{
    ContactField{.key = kContactUid, .title = "UID", .kind = FieldKind::Uid},
    ContactField{
        .key = kContactFirstName,
        .title = "First Name",
        .kind = FieldKind::Name,
        .name = &Person::firstName,
        .match = MatchPreference{1, "filterFirstname", true, "firstname", "btnFilterFirstname"}},
    ContactField{.key = kContactLastName,
                 .title = "Last Name",
                 .kind = FieldKind::Name,
                 .name = &Person::lastName,
                 .match =
                     MatchPreference{2, "filterLastname", true, "lastname", "btnFilterLastname"}},
    ContactField{.key = kContactNickname,
                 .title = "Nickname",
                 .kind = FieldKind::Name,
                 .name = &Person::nickname,
                 .match =
                     MatchPreference{0, "filterNickname", false, "nickname", "btnFilterNickname"}},
    ContactField{.key = kContactHome,
                 .title = "Home",
                 .kind = FieldKind::Phone,
                 .phoneWord = "home",
                 .match = MatchPreference{3, "filterHome", false, "home", "btnFilterHome"}},
    ContactField{.key = kContactWork,
                 .title = "Work",
                 .kind = FieldKind::Phone,
                 .phoneWord = "work",
                 .match = MatchPreference{4, "filterWork", false, "work", "btnFilterWork"}},
    ContactField{.key = kContactMobile,
                 .title = "Mobile",
                 .kind = FieldKind::Phone,
                 .phoneWord = "mobile",
                 .match = MatchPreference{5, "filterMobile", false, "mobile", "btnFilterMobile"}},
    ContactField{.key = kContactModified, .title = "Modified", .kind = FieldKind::Modified},
    ContactField{.key = kContactCheck, .title = "Delete", .kind = FieldKind::Check},
};

/// The field with this key, which must exist. In a constant expression the compiler rejects a key
/// that no field has.
constexpr const ContactField& contactField(std::string_view key)
{
    return *std::find_if(kContactFields.begin(), kContactFields.end(),
                         [&](const ContactField& field) { return field.key == key; });
}

/// The fields that are texts, in the order of `kContactFields`.
inline constexpr auto kTextFields = [] {
    constexpr auto kIsText = [](const ContactField& field) { return field.isText(); };
    constexpr auto kCount = std::count_if(kContactFields.begin(), kContactFields.end(), kIsText);
    std::array<const ContactField*, kCount> fields{};
    std::size_t count = 0;
    for (const auto& field : kContactFields) {
        if (kIsText(field)) {
            fields[count++] = &field;
        }
    }
    return fields;
}();

/// The place in `kTextFields` of the field with this key; their number for every other key.
constexpr std::size_t textPlace(std::string_view key)
{
    std::size_t place = 0;
    while (place < kTextFields.size() && kTextFields[place]->key != key) {
        ++place;
    }
    return place;
}

/// The fields that can be part of a match key, in the order of their values in it.
inline constexpr auto kMatchFields = [] {
    constexpr auto kCanMatch = [](const ContactField& field) { return field.match.has_value(); };
    constexpr auto kCount = std::count_if(kContactFields.begin(), kContactFields.end(), kCanMatch);
    std::array<const ContactField*, kCount> fields{};
    for (const auto& field : kContactFields) {
        if (kCanMatch(field)) {
            fields[field.match->place] = &field;
        }
    }
    return fields;
}();

/// Which match fields are on; a bit's position is the field's place in a match key.
using MatchFieldChoice = std::bitset<kMatchFields.size()>;

// What the compiler cannot find by itself when a field is added. The checks compare values only:
// GCC rejects addresses in a constant expression when it instruments for undefined behaviour.
static_assert(std::all_of(kMatchFields.begin(), kMatchFields.end(),
                          [place = std::size_t{0}](const ContactField* field) mutable {
                              return field->match->place == place++;
                          }),
              "two match fields have the same place");
static_assert(std::all_of(kContactFields.begin(), kContactFields.end(),
                          [](const ContactField& field) {
                              return std::count_if(kContactFields.begin(), kContactFields.end(),
                                                   [&](const ContactField& other) {
                                                       return other.key == field.key;
                                                   }) == 1 &&
                                     (field.kind == FieldKind::Name) == (field.name != nullptr) &&
                                     (field.kind == FieldKind::Phone) == !field.phoneWord.empty();
                          }),
              "a key exists twice, or a field's kind does not fit its source");

}  // namespace dunmora
