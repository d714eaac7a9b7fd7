#include "review/ComparedText.h"

#include "platform/PersonCard.h"
#include "text/Ascii.h"
#include "text/TextHash.h"
#include "text/WhiteSpace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace dunmora {

namespace {

constexpr auto kNowhere = std::string_view::npos;

template <std::size_t N>
bool isOneOf(std::string_view name, const std::array<std::string_view, N>& names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Whether the label says what the value is, and not only which of several it is.
bool isLabelMeaning(std::string_view name)
{
    constexpr auto kNames = std::to_array<std::string_view>(
        {"RELATED", "X-ABDATE", "X-ABRELATEDNAMES", "X-SOCIALPROFILE"});
    return isOneOf(name, kNames);
}

bool isDate(std::string_view name)
{
    constexpr auto kNames =
        std::to_array<std::string_view>({"ANNIVERSARY", "BDAY", "DEATHDATE", "X-ABDATE",
                                         "X-ANNIVERSARY", "X-EVOLUTION-ANNIVERSARY"});
    return isOneOf(name, kNames);
}

bool isFolded(std::string_view name)
{
    constexpr auto kNames = std::to_array<std::string_view>({"ADR", "FN", "LABEL", "NOTE"});
    return isOneOf(name, kNames);
}

bool isAddressOnInternet(std::string_view name)
{
    constexpr auto kNames = std::to_array<std::string_view>(
        {"CALADRURI", "CALURI", "CONTACT-URI", "FBURL", "IMPP", "URL", "X-EVOLUTION-BLOG-URL",
         "X-EVOLUTION-VIDEO-URL", "X-SOCIALPROFILE"});
    return isOneOf(name, kNames);
}

void makeLower(std::string& text, std::size_t begin, std::size_t end)
{
    std::transform(text.begin() + static_cast<std::ptrdiff_t>(begin),
                   text.begin() + static_cast<std::ptrdiff_t>(end),
                   text.begin() + static_cast<std::ptrdiff_t>(begin), toLowerAscii);
}

/// The size of the scheme at the beginning (RFC 3986 §3.1), without its colon; 0 if there is none.
std::size_t schemeSize(std::string_view uri)
{
    constexpr auto kIsLetter = [](char c) {
        return toLowerAscii(c) >= 'a' && toLowerAscii(c) <= 'z';
    };
    const auto colon = uri.find(':');
    const auto isScheme =
        colon != kNowhere && colon > 0 && kIsLetter(uri.front()) &&
        std::all_of(uri.begin(), uri.begin() + static_cast<std::ptrdiff_t>(colon), [&](char c) {
            return kIsLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
        });
    return isScheme ? colon : 0;
}

/// The URI with its scheme and its host in lower case, those of "//ann@HOST:80/" and of
/// "ann@HOST/".
std::string comparedUri(std::string_view value)
{
    std::string uri(trimmed(value));
    const auto scheme = schemeSize(uri);
    if (scheme == 0) {
        return uri;
    }
    makeLower(uri, 0, scheme);
    auto host = scheme + 1;
    const auto hasAuthority = uri.compare(host, 2, "//") == 0;
    host += hasAuthority ? 2 : 0;
    const auto end = std::min(uri.find_first_of("/?#;", host), uri.size());
    const auto at = std::string_view(uri).substr(0, end).rfind('@');
    if (at != kNowhere && at >= host) {
        host = at + 1;
    } else if (!hasAuthority) {
        return uri;
    }
    makeLower(uri, host, end);
    return uri;
}

/// The address with its domain in lower case; the part before it may depend on the case
/// (RFC 5321 §2.4).
std::string comparedEmail(std::string_view value)
{
    constexpr std::string_view kScheme = "mailto:";
    auto rest = trimmed(value);
    if (equalsIgnoringCase(rest.substr(0, kScheme.size()), kScheme)) {
        rest.remove_prefix(kScheme.size());
    }
    std::string address(rest);
    if (const auto at = address.rfind('@'); at != std::string::npos) {
        makeLower(address, at, address.size());
    }
    return address;
}

/// The date "1980-04-01" as "19800401" (ISO 8601 §5.2.2); everything else as it is.
std::string comparedDate(std::string_view value)
{
    constexpr std::string_view kForm = "dddd-dd-dd";
    std::string digits;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto isDigit = value[i] >= '0' && value[i] <= '9';
        if (value.size() != kForm.size() || isDigit != (kForm[i] == 'd') ||
            (!isDigit && value[i] != '-')) {
            return std::string(value);
        }
        digits += isDigit ? std::string(1, value[i]) : "";
    }
    return digits;
}

std::string comparedComponent(std::string_view name, std::string_view value)
{
    if (name == "EMAIL") {
        return comparedEmail(value);
    }
    if (name == "MEMBER" || name == "X-ADDRESSBOOKSERVER-MEMBER" || isAddressOnInternet(name)) {
        return comparedUri(value);
    }
    if (isDate(name)) {
        return comparedDate(value);
    }
    return isFolded(name) ? withFoldedWhiteSpace(value) : std::string(value);
}

}  // namespace

std::string comparedText(const CardProperty& property)
{
    std::string text;
    if (isLabelMeaning(property.name)) {
        std::transform(property.label.begin(), property.label.end(), std::back_inserter(text),
                       toLowerAscii);
        text += '\0';
    }
    if (property.binary) {
        const auto& bytes = property.binary->bytes;
        return text + "binary " + std::to_string(bytes.size()) + ' ' +
               std::to_string(textHash(bytes));
    }
    // Empty components at the end are often omitted.
    auto count = property.components.size();
    while (count > 0 && showsNothing(property.components[count - 1])) {
        --count;
    }
    for (std::size_t i = 0; i < count; ++i) {
        text += i > 0 ? std::string(1, '\0') : "";
        text += comparedComponent(property.name, property.components[i]);
    }
    return text;
}

}  // namespace dunmora
