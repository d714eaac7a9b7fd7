#include "adapters/eds/PlainCard.h"

#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace dunmora {

namespace {

enum CharacterKind : std::uint8_t { InName = 1, InParameters = 2 };

/// What each character may be part of. One look-up for each of a card's characters takes a fraction
/// of the time of comparing it with all of these.
constexpr auto kCharacterKinds = [] {
    std::array<std::uint8_t, 256> kinds{};
    const auto allow = [&kinds](std::string_view characters, unsigned kind) {
        for (const char c : characters) {
            auto& known = kinds[static_cast<unsigned char>(c)];
            known = static_cast<std::uint8_t>(known | kind);
        }
    };
    allow("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-", InName);
    // No q, which is in the name of an encoding that says where the value ends.
    allow("ABCDEFGHIJKLMNOPRSTUVWXYZabcdefghijklmnoprstuvwxyz0123456789-;=,+\"", InParameters);
    return kinds;
}();

bool isIn(char c, CharacterKind kind)
{
    return (kCharacterKinds[static_cast<unsigned char>(c)] & kind) != 0;
}

bool isName(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return isIn(c, InName); });
}

/// Whether each quoted text of the parameters is a whole value.
bool arePlainlyQuoted(std::string_view parameters)
{
    bool isInside = false;
    for (auto i = parameters.find('"'); i != std::string_view::npos;
         i = parameters.find('"', i + 1)) {
        const bool isAtEdge = isInside ? i + 1 == parameters.size() || parameters[i + 1] == ',' ||
                                             parameters[i + 1] == ';'
                                       : parameters[i - 1] == '=' || parameters[i - 1] == ',';
        if (!isAtEdge) {
            return false;
        }
        isInside = !isInside;
    }
    return !isInside;
}

/// Whether these parameters, each after a semicolon, end nowhere but at the next colon, and say
/// nothing about where the value ends, as QUOTED-PRINTABLE does.
bool arePlainParameters(std::string_view parameters)
{
    char before = '\0';
    for (const char c : parameters) {
        if (!isIn(c, InParameters) || (before == ';' && (c == ';' || c == '='))) {
            return false;
        }
        before = c;
    }
    return before != ';' && arePlainlyQuoted(parameters);
}

/// Whether the value means itself: it is one value, and nothing in it is escaped.
bool isPlainValue(std::string_view value)
{
    return !value.empty() && std::all_of(value.begin(), value.end(), [](char c) {
        return c > ' ' && c <= '~' && c != '\\' && c != ';' && c != ',';
    });
}

/// Takes the next line from the text, without its line end. Nullopt when there is none or when
/// libebook might find another end: a carriage return alone ends a line, too, and an escaped line
/// end does not.
std::optional<std::string_view> takeLine(std::string_view& text)
{
    const auto end = std::min(text.find('\n'), text.size());
    auto line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    if (line.empty() || line.ends_with('\\') || line.find('\r') != std::string_view::npos) {
        return std::nullopt;
    }
    return line;
}

/// The parts of a line that begins a property.
struct PlainLine {
    bool isGrouped;
    bool hasParameters;
    std::string_view name;
    std::string_view value;
};

/// Nullopt when the property's name or its end need a closer look.
std::optional<PlainLine> plainLine(std::string_view line)
{
    const auto colon = line.find(':');
    const auto head = line.substr(0, colon);
    auto name = head.substr(0, head.find(';'));
    const auto parameters = head.substr(name.size());
    if (colon == std::string_view::npos || !arePlainParameters(parameters)) {
        return std::nullopt;
    }
    const auto dot = name.find('.');
    const bool isGrouped = dot != std::string_view::npos;
    if (isGrouped) {
        if (!isName(name.substr(0, dot))) {
            return std::nullopt;
        }
        name.remove_prefix(dot + 1);
    }
    if (!isName(name)) {
        return std::nullopt;
    }
    return PlainLine{isGrouped, !parameters.empty(), name, line.substr(colon + 1)};
}

}  // namespace

std::optional<std::string_view> plainUid(std::string_view card)
{
    if (const auto begin = takeLine(card); !begin || !equalsIgnoringCase(*begin, "BEGIN:VCARD")) {
        return std::nullopt;
    }
    std::string_view uid;
    bool isAfterUid = false;
    while (const auto text = takeLine(card)) {
        if (isBlank(text->front())) {
            if (isAfterUid) {
                return std::nullopt;
            }
            continue;
        }
        const auto line = plainLine(*text);
        if (!line || equalsIgnoringCase(line->name, "BEGIN") ||
            equalsIgnoringCase(line->name, "X-EVOLUTION-LIST")) {
            return std::nullopt;
        }
        isAfterUid = equalsIgnoringCase(line->name, "UID");
        if (isAfterUid) {
            if (!uid.empty() || line->isGrouped || line->hasParameters ||
                !isPlainValue(line->value)) {
                return std::nullopt;
            }
            uid = line->value;
        }
        if (equalsIgnoringCase(line->name, "END")) {
            return uid.empty() || !equalsIgnoringCase(*text, "END:VCARD") ? std::nullopt
                                                                          : std::optional(uid);
        }
    }
    return std::nullopt;
}

}  // namespace dunmora
