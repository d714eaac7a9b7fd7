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

/// How the values of a property are written for the comparison.
enum class Form { AsItIs, Date, Email, Folded, Uri };

struct Rule {
    std::string_view name;
    Form form = Form::AsItIs;
    /// Whether the label says what the value is, and not only which of several it is.
    bool isLabelMeaning = false;
};

Rule ruleFor(std::string_view name)
{
    // Sorted by name.
    static constexpr auto kRules = std::to_array<Rule>({
        {"ADR", Form::Folded},
        {"ANNIVERSARY", Form::Date},
        {"BDAY", Form::Date},
        {"CALADRURI", Form::Uri},
        {"CALURI", Form::Uri},
        {"CONTACT-URI", Form::Uri},
        {"DEATHDATE", Form::Date},
        {"EMAIL", Form::Email},
        {"FBURL", Form::Uri},
        {"FN", Form::Folded},
        {"IMPP", Form::Uri},
        {"LABEL", Form::Folded},
        {"MEMBER", Form::Uri},
        {"NOTE", Form::Folded},
        {"RELATED", Form::AsItIs, true},
        {"URL", Form::Uri},
        {"X-ABDATE", Form::Date, true},
        {"X-ABRELATEDNAMES", Form::AsItIs, true},
        {"X-ADDRESSBOOKSERVER-MEMBER", Form::Uri},
        {"X-ANNIVERSARY", Form::Date},
        {"X-EVOLUTION-ANNIVERSARY", Form::Date},
        {"X-EVOLUTION-BLOG-URL", Form::Uri},
        {"X-EVOLUTION-VIDEO-URL", Form::Uri},
        {"X-SOCIALPROFILE", Form::Uri, true},
    });
    constexpr auto kIsBefore = [](const Rule& a, const Rule& b) { return a.name < b.name; };
    static_assert(std::is_sorted(kRules.begin(), kRules.end(), kIsBefore));
    const Rule wanted{name};
    const auto* const found = std::lower_bound(kRules.begin(), kRules.end(), wanted, kIsBefore);
    return found != kRules.end() && found->name == name ? *found : wanted;
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

/// Appends the URI with its scheme and its host in lower case, those of "//ann@HOST:80/" and of
/// "ann@HOST/".
void appendComparedUri(std::string& text, std::string_view value)
{
    const auto uri = trimmed(value);
    const auto begin = text.size();
    text += uri;
    const auto scheme = schemeSize(uri);
    if (scheme == 0) {
        return;
    }
    makeLower(text, begin, begin + scheme);
    auto host = scheme + 1;
    const auto hasAuthority = uri.substr(host).starts_with("//");
    host += hasAuthority ? 2 : 0;
    const auto end = std::min(uri.find_first_of("/?#;", host), uri.size());
    const auto at = uri.substr(0, end).rfind('@');
    if (at != kNowhere && at >= host) {
        host = at + 1;
    } else if (!hasAuthority) {
        return;
    }
    makeLower(text, begin + host, begin + end);
}

/// Appends the address with its domain in lower case; the part before it may depend on the case
/// (RFC 5321 §2.4).
void appendComparedEmail(std::string& text, std::string_view value)
{
    constexpr std::string_view kScheme = "mailto:";
    auto address = trimmed(value);
    if (equalsIgnoringCase(address.substr(0, kScheme.size()), kScheme)) {
        address.remove_prefix(kScheme.size());
    }
    text += address;
    if (const auto at = address.rfind('@'); at != kNowhere) {
        makeLower(text, text.size() - address.size() + at, text.size());
    }
}

/// Appends the date "1980-04-01" as "19800401" (ISO 8601 §5.2.2); everything else as it is.
void appendComparedDate(std::string& text, std::string_view value)
{
    constexpr std::string_view kForm = "dddd-dd-dd";
    const auto begin = text.size();
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto isDigit = value[i] >= '0' && value[i] <= '9';
        if (value.size() != kForm.size() || isDigit != (kForm[i] == 'd') ||
            (!isDigit && value[i] != '-')) {
            text.replace(begin, kNowhere, value);
            return;
        }
        if (isDigit) {
            text += value[i];
        }
    }
}

void appendComparedComponent(std::string& text, Form form, std::string_view value)
{
    switch (form) {
    case Form::AsItIs:
        text += value;
        break;
    case Form::Date:
        appendComparedDate(text, value);
        break;
    case Form::Email:
        appendComparedEmail(text, value);
        break;
    case Form::Folded:
        text += withFoldedWhiteSpace(value);
        break;
    case Form::Uri:
        appendComparedUri(text, value);
        break;
    }
}

}  // namespace

void appendComparedText(std::string& text, const CardProperty& property, OmittedComponents omitted)
{
    const auto rule = ruleFor(property.name);
    if (rule.isLabelMeaning) {
        std::transform(property.label.begin(), property.label.end(), std::back_inserter(text),
                       toLowerAscii);
        text += '\0';
    }
    if (property.binary) {
        const auto& bytes = property.binary->bytes;
        text += "binary " + std::to_string(bytes.size()) + ' ' + std::to_string(textHash(bytes));
        return;
    }
    const auto component = [&](std::size_t i) {
        const auto isOmitted = i >= omitted.begin && i < omitted.end;
        return isOmitted ? std::string_view() : std::string_view(property.components[i]);
    };
    // Empty components at the end are often omitted.
    auto count = property.components.size();
    while (count > 0 && showsNothing(component(count - 1))) {
        --count;
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) {
            text += '\0';
        }
        appendComparedComponent(text, rule.form, component(i));
    }
}

}  // namespace dunmora
