#pragma once

#include "platform/BoxedOptional.h"
#include "platform/PersonSource.h"

#include <string>
#include <vector>

namespace dunmora {

/// A property of a person's whole card (RFC 6350 §6), decoded: transfer encoding, character set and
/// escapes are resolved. All text is UTF-8.
struct CardProperty {
    /// The standard's name in upper case, without the group: "TEL", "X-SOCIALPROFILE".
    std::string name;
    /// What this entry is for, raw, as the address book stores it: the label of its group
    /// (X-ABLabel), else its types joined with ", "; empty when it has neither.
    std::string label;
    /// The components of a structured value (N, ADR, ORG, GENDER), in their order; a single text
    /// for every other property. Empty components are kept.
    std::vector<std::string> components;

    /// A value that is no text: a photo, a logo, a sound, a key.
    struct Binary {
        /// "image/jpeg"; empty when the card does not say it.
        std::string mediaType;
        std::string bytes;

        bool operator==(const Binary&) const = default;
    };
    /// The property then has no components. Boxed, because few properties have one and a card may
    /// have a million properties.
    BoxedOptional<Binary> binary;

    bool operator==(const CardProperty&) const = default;
};

/// Everything that an address book holds of a person.
struct PersonCard {
    /// In the card's order. A list of independent texts (NICKNAME, CATEGORIES) is one property for
    /// each text.
    std::vector<CardProperty> properties;
    /// The names of the lists, such as mailing lists, that the person is a member of. A list is an
    /// entry of its own in the address book (KIND:group, RFC 6350 §6.1.4).
    std::vector<std::string> lists;
    PersonSource source;
};

}  // namespace dunmora
