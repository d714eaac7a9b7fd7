#pragma once

#include "adapters/vcard/NameKey.h"
#include "text/Ascii.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace dunmora {

/// The properties that are read (RFC 6350 §6), and all others as one.
enum class PropertyKind : std::uint8_t {
    Ignored,
    Name,
    FormattedName,
    Nickname,
    Phone,
    Label,
    Uid,
    Revision,
    Version,
    CardKind,
    List,
    Agent,
};

/// The number of values of PropertyKind.
constexpr std::size_t kPropertyKinds = std::size_t(PropertyKind::Agent) + 1;

/// The version of a card, as far as it affects how the card is read.
enum class VCardVersion : std::uint8_t {
    /// No VERSION property has been read yet.
    Unknown,
    /// 2.1 (versit).
    V21,
    /// 3.0 (RFC 2426), 4.0 (RFC 6350) or an unknown version.
    Later,
};

/// Whether a line delimits a card.
enum class Delimiter : std::uint8_t { None, Begin, End };

/// Implements `delimiterOf` for trimmed lines that begin with B or E, which are few.
Delimiter delimiterFrom(std::string_view content);

/// Recognizes BEGIN:VCARD and END:VCARD in any case, with blanks around either word.
inline Delimiter delimiterOf(std::string_view content)
{
    if (content == "BEGIN:VCARD") {
        return Delimiter::Begin;
    }
    if (content == "END:VCARD") {
        return Delimiter::End;
    }
    content = trimmed(content);
    const char initial = content.empty() ? '\0' : toUpperAscii(content.front());
    return initial == 'B' || initial == 'E' ? delimiterFrom(content) : Delimiter::None;
}

/// Recognizes a property by its name, in any case.
PropertyKind propertyKind(std::string_view name);

/// The same by the name's key, for names of at most `NameKey::kLongest` characters.
inline PropertyKind propertyKindOf(std::uint64_t nameKey)
{
    switch (nameKey) {
    case NameKey::of("N"):
        return PropertyKind::Name;
    case NameKey::of("FN"):
        return PropertyKind::FormattedName;
    case NameKey::of("TEL"):
        return PropertyKind::Phone;
    case NameKey::of("UID"):
        return PropertyKind::Uid;
    case NameKey::of("REV"):
        return PropertyKind::Revision;
    case NameKey::of("KIND"):
        return PropertyKind::CardKind;
    case NameKey::of("AGENT"):
        return PropertyKind::Agent;
    case NameKey::of("VERSION"):
        return PropertyKind::Version;
    case NameKey::of("NICKNAME"):
        return PropertyKind::Nickname;
    default:
        return PropertyKind::Ignored;
    }
}

/// The group and the name of a property, as in `item1.TEL`; the group may be empty.
struct PropertyName {
    std::string_view group;
    std::string_view name;
};

inline PropertyName splitName(std::string_view name)
{
    name = trimmed(name);
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? PropertyName{{}, name}
                                         : PropertyName{name.substr(0, dot), name.substr(dot + 1)};
}

/// Whether the text is a plausible name: not empty, only visible ASCII characters.
inline bool isPropertyName(std::string_view name)
{
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

/// The offsets of the parts of an unfolded property.
struct PropertyHead {
    /// The first ";" or ":".
    std::size_t nameEnd;
    std::size_t colon;
    /// False without a colon; such a line is not a property.
    bool isComplete;
};

PropertyHead headOf(std::string_view unfolded);

/// A parameter of a property (RFC 6350 §5), such as TYPE=HOME.
struct Parameter {
    /// Empty for a bare vCard 2.1 parameter, such as HOME.
    std::string_view name;
    std::string_view value;
};

/// Removes the first parameter from a list such as `;TYPE="home,voice";PREF=1` and returns it.
Parameter takeParameter(std::string_view& parameters);

/// The value without the quotation marks around it, if there are any.
std::string_view withoutQuotes(std::string_view value);

/// How the bytes of a value are written (RFC 2045 §6).
enum class TransferEncoding : std::uint8_t { Plain, QuotedPrintable, Base64 };

/// How a value is encoded.
struct ValueEncoding {
    TransferEncoding transfer = TransferEncoding::Plain;
    std::string_view charset;
};

/// How the value of a property with these parameters, each with its leading ";", is encoded.
ValueEncoding valueEncoding(std::string_view parameters);

/// A parsed property. The texts are views into the unfolded text.
struct Property {
    PropertyKind kind;
    std::string_view group;
    std::string_view name;
    /// Each with its leading ";"; may be empty.
    std::string_view parameters;
    ValueEncoding encoding;
    std::string_view value;
    /// The value needs neither decoding nor unescaping: it is known to be ASCII without a backslash
    /// or encoding. The values of other properties may be, too.
    bool isPlain = false;
};

/// Splits an unfolded property whose head is complete.
Property splitProperty(std::string_view text, const PropertyHead& head);

/// Appends the text to `out` with its backslash escapes resolved. vCard 2.1 has no "\n". A
/// backslash before a character that needs no escape is kept.
void appendUnescaped(std::string& out, std::string_view text, VCardVersion version);

/// Removes the first component from a structured value, such as "Lee;Ann", and returns it. With a
/// comma as the separator, the first text of a list.
std::string_view takeComponent(std::string_view& text, char separator = ';');

}  // namespace dunmora
