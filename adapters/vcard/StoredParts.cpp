#include "adapters/vcard/StoredParts.h"

#include "adapters/vcard/Lines.h"
#include "adapters/vcard/Property.h"
#include "adapters/vcard/StoredProperties.h"
#include "text/Ascii.h"

#include <algorithm>
#include <cstddef>

namespace dunmora {

namespace {

/// Whether the line is a property without parameters that has this name, in upper case.
bool isProperty(std::string_view line, std::string_view name)
{
    return line.size() > name.size() && line[name.size()] == ':' &&
           equalsIgnoringCase(line.substr(0, name.size()), name);
}

/// Whether the line has one of the values that differ in copies of a card.
bool hasOwnValue(std::string_view line)
{
    const char initial = line.empty() ? '\0' : toUpperAscii(line.front());
    return (initial == 'U' && isProperty(line, "UID")) ||
           (initial == 'R' && isProperty(line, "REV"));
}

}  // namespace

std::optional<std::array<std::string_view, 3>> storedParts(std::string_view card)
{
    std::array<std::string_view, 3> parts;
    std::size_t part = 0;
    std::size_t partBegin = 0;
    bool hasName = false;
    // A quoted-printable text may continue on any line.
    bool mayBeContinued = false;
    Lines lines(card);
    // The first line is BEGIN.
    for (auto line = lines.at(0); line.next < card.size();) {
        line = lines.at(line.next);
        const auto content = card.substr(line.begin, line.end - line.begin);
        if (delimiterOf(content) != Delimiter::None) {
            // Anything but the card's own end belongs to a card inside.
            parts[part] = card.substr(partBegin, line.end - partBegin);
            return line.next == card.size() && hasName ? std::optional(parts) : std::nullopt;
        }
        const bool isContinued = line.next < card.size() && isBlank(card[line.next]);
        const bool isWhole = !mayBeContinued && !isContinued;
        if (isWhole && part + 1 < parts.size() && hasOwnValue(content)) {
            parts[part] = card.substr(partBegin, line.begin - partBegin);
            ++part;
            partBegin = line.next;
        }
        hasName = hasName || (isWhole && showsName(content));
        mayBeContinued = content.ends_with('=');
    }
    return std::nullopt;
}

}  // namespace dunmora
