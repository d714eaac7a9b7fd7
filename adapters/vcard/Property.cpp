#include "adapters/vcard/Property.h"

#include "text/Ascii.h"

#include <algorithm>

namespace dunmora {

namespace {

/// Returns the offset of the ":" before the value: the first one outside quotation marks or, when a
/// quotation mark is never closed, the first one at all.
std::size_t valueColon(std::string_view content, std::size_t from)
{
    bool quoted = false;
    for (auto i = from; i < content.size(); ++i) {
        if (content[i] == '"') {
            quoted = !quoted;
        } else if (content[i] == ':' && !quoted) {
            return i;
        }
    }
    return content.find(':', from);
}

/// Returns the length of the first parameter, which ends at a ";" outside quotation marks.
std::size_t parameterEnd(std::string_view text)
{
    const auto end = std::min(text.find(';'), text.size());
    if (text.substr(0, end).find('"') == std::string_view::npos) {
        return end;
    }
    bool quoted = false;
    std::size_t i = 0;
    while (i < text.size() && (quoted || text[i] != ';')) {
        quoted = quoted != (text[i] == '"');
        ++i;
    }
    return i;
}

}  // namespace

Delimiter delimiterFrom(std::string_view content)
{
    const auto colon = content.find(':');
    if (colon == std::string_view::npos ||
        !equalsIgnoringCase(trimmed(content.substr(colon + 1)), "VCARD")) {
        return Delimiter::None;
    }
    const auto name = trimmed(content.substr(0, colon));
    return equalsIgnoringCase(name, "BEGIN") ? Delimiter::Begin
           : equalsIgnoringCase(name, "END") ? Delimiter::End
                                             : Delimiter::None;
}

PropertyKind propertyKind(std::string_view name)
{
    const auto is = [&](std::string_view known, PropertyKind kind) {
        return equalsIgnoringCase(name, known) ? kind : PropertyKind::Ignored;
    };
    switch (name.size()) {
    case 9:
        return is("X-ABLABEL", PropertyKind::Label);
    case 16:
        return is("X-EVOLUTION-LIST", PropertyKind::List);
    case 24:
        return is("X-ADDRESSBOOKSERVER-KIND", PropertyKind::CardKind);
    default:
        return propertyKindOf(NameKey::of(name));
    }
}

PropertyHead headOf(std::string_view unfolded)
{
    std::size_t end = 0;
    while (end < unfolded.size() && unfolded[end] != ':' && unfolded[end] != ';') {
        ++end;
    }
    if (end < unfolded.size() && unfolded[end] == ':') {
        return {end, end, true};
    }
    const auto colon = valueColon(unfolded, end);
    return {end, std::min(colon, unfolded.size()), colon != std::string_view::npos};
}

std::string_view withoutQuotes(std::string_view value)
{
    return value.size() >= 2 && value.front() == '"' && value.back() == '"'
               ? value.substr(1, value.size() - 2)
               : value;
}

Parameter takeParameter(std::string_view& parameters)
{
    parameters.remove_prefix(1);
    const auto parameter = parameters.substr(0, parameterEnd(parameters));
    parameters.remove_prefix(parameter.size());
    const auto equals = parameter.find('=');
    return equals == std::string_view::npos ? Parameter{{}, trimmed(parameter)}
                                            : Parameter{trimmed(parameter.substr(0, equals)),
                                                        trimmed(parameter.substr(equals + 1))};
}

ValueEncoding valueEncoding(std::string_view parameters)
{
    ValueEncoding encoding;
    while (!parameters.empty()) {
        const auto parameter = takeParameter(parameters);
        const auto value = withoutQuotes(parameter.value);
        if (equalsIgnoringCase(parameter.name, "CHARSET")) {
            encoding.charset = value;
        } else if (parameter.name.empty() || equalsIgnoringCase(parameter.name, "ENCODING")) {
            if (equalsIgnoringCase(value, "QUOTED-PRINTABLE")) {
                encoding.transfer = TransferEncoding::QuotedPrintable;
            } else if (equalsIgnoringCase(value, "BASE64") ||
                       (!parameter.name.empty() && equalsIgnoringCase(value, "B"))) {
                encoding.transfer = TransferEncoding::Base64;
            }
        }
    }
    return encoding;
}

Property splitProperty(std::string_view text, const PropertyHead& head)
{
    const auto [group, name] = splitName(text.substr(0, head.nameEnd));
    const auto parameters = text.substr(head.nameEnd, head.colon - head.nameEnd);
    return {propertyKind(name),         group, name, parameters, valueEncoding(parameters),
            text.substr(head.colon + 1)};
}

void appendUnescaped(std::string& out, std::string_view text, VCardVersion version)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == '\\' || next == ';' || next == ',' || next == ':') {
            out += next;
            ++i;
        } else if ((next == 'n' || next == 'N') && version != VCardVersion::V21) {
            out += '\n';
            ++i;
        } else {
            out += text[i];
        }
    }
}

std::string_view takeComponent(std::string_view& text, char separator)
{
    std::size_t end = 0;
    while (end < text.size() && text[end] != separator) {
        end += text[end] == '\\' ? 2 : 1;
    }
    const auto component = text.substr(0, end);
    text.remove_prefix(std::min(component.size() + 1, text.size()));
    return component;
}

}  // namespace dunmora
