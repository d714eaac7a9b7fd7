#include "adapters/vcard/CardProperties.h"

#include "adapters/vcard/Card.h"
#include "adapters/vcard/CardScanner.h"
#include "adapters/vcard/Property.h"
#include "adapters/vcard/PropertyTypes.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace dunmora {

namespace {

template <std::size_t Count>
bool isOneOf(std::string_view text, const std::array<std::string_view, Count>& texts)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

bool isStructured(std::string_view name)
{
    static constexpr std::array<std::string_view, 4> kNames{"N", "ADR", "ORG", "GENDER"};
    return isOneOf(name, kNames);
}

bool isList(std::string_view name)
{
    static constexpr std::array<std::string_view, 2> kNames{"NICKNAME", "CATEGORIES"};
    return isOneOf(name, kNames);
}

/// The kind of media of a property whose types name the format of its value.
std::string_view mediaOf(std::string_view name)
{
    return name == "PHOTO" || name == "LOGO" ? "image"
           : name == "SOUND"                 ? "audio"
           : name == "KEY"                   ? "application"
                                             : "";
}

std::string lower(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), toLowerAscii);
    return result;
}

/// A text of the card's syntax, such as a name or a type.
std::string syntaxText(std::string_view text)
{
    return isUtf8(text) ? std::string(text) : toUtf8(text, "");
}

std::string nameOf(const Property& property)
{
    auto name = syntaxText(property.name);
    std::transform(name.begin(), name.end(), name.begin(), toUpperAscii);
    return name;
}

/// Whether the type says whose the value is (RFC 6350 §5.6); the types of a photo or a key may also
/// name its format.
bool isHomeOrWork(std::string_view type)
{
    return equalsIgnoringCase(type, "HOME") || equalsIgnoringCase(type, "WORK");
}

std::string typesOf(const Property& property, bool hasMedia)
{
    std::string types;
    forEachType(property.parameters, [&](std::string_view type) {
        if (hasMedia ? isHomeOrWork(type) : isLabelType(type)) {
            types += types.empty() ? "" : ", ";
            types += syntaxText(type);
        }
    });
    return types;
}

/// The media type that the parameters give, such as "image/jpeg" for TYPE=JPEG.
std::string mediaTypeOf(const Property& property, std::string_view media)
{
    std::string mediaType;
    for (auto parameters = property.parameters; !parameters.empty();) {
        const auto parameter = takeParameter(parameters);
        if (equalsIgnoringCase(parameter.name, "MEDIATYPE")) {
            auto value = parameter.value;
            mediaType = lower(syntaxText(takeType(value)));
        }
    }
    forEachType(property.parameters, [&](std::string_view type) {
        if (!mediaType.empty() || isHomeOrWork(type) || !isLabelType(type)) {
            return;
        }
        const auto format = lower(syntaxText(type));
        if (format.find('/') != std::string::npos) {
            mediaType = format;
        } else if (!media.empty()) {
            mediaType = std::string(media) + "/" + (format == "jpg" ? "jpeg" : format);
        }
    });
    return mediaType;
}

/// What the parameters say of a property whose value is empty: the label of an address
/// (RFC 6350 §6.3.1), the user's name in a social network. Empty when they say nothing.
std::string valueInParameters(const Property& property, std::string_view name)
{
    const auto* const wanted = name == "ADR"               ? "LABEL"
                               : name == "X-SOCIALPROFILE" ? "X-USER"
                                                           : nullptr;
    for (auto parameters = property.parameters; wanted != nullptr && !parameters.empty();) {
        const auto parameter = takeParameter(parameters);
        if (equalsIgnoringCase(parameter.name, wanted)) {
            return syntaxText(withoutQuotes(parameter.value));
        }
    }
    return {};
}

/// A data: URI with base64 content.
std::optional<CardProperty::Binary> dataOf(std::string_view uri)
{
    constexpr std::string_view kScheme = "data:";
    constexpr std::string_view kBase64 = ";base64";
    const auto comma = uri.find(',');
    if (!equalsIgnoringCase(uri.substr(0, kScheme.size()), kScheme) ||
        comma == std::string_view::npos) {
        return std::nullopt;
    }
    const auto head = uri.substr(kScheme.size(), comma - kScheme.size());
    if (head.size() < kBase64.size() ||
        !equalsIgnoringCase(head.substr(head.size() - kBase64.size()), kBase64)) {
        return std::nullopt;
    }
    auto bytes = decodeBase64(uri.substr(comma + 1));
    if (!bytes) {
        return std::nullopt;
    }
    return CardProperty::Binary{lower(head.substr(0, head.find(';'))), *std::move(bytes)};
}

/// The properties of a card as the platform describes them.
class Converter final {
public:
    /// Without names, all properties are converted.
    Converter(Card& card, std::optional<std::span<const std::string>> names)
        : card_(card), names_(names)
    {
        card_.readLabels();
    }

    std::vector<CardProperty> properties()
    {
        result_.reserve(names_ ? names_->size() : card_.properties().size());
        for (const auto& raw : card_.properties()) {
            if (raw.property.kind != PropertyKind::Label) {
                append(raw);
            }
        }
        return std::move(result_);
    }

private:
    bool isWanted(const Property& property) const
    {
        return !names_ || std::any_of(names_->begin(), names_->end(), [&](std::string_view name) {
            return equalsIgnoringCase(property.name, name);
        });
    }

    void append(const RawProperty& raw)
    {
        const auto& property = card_.parse(raw);
        if (!isWanted(property)) {
            return;
        }
        auto name = nameOf(property);
        const auto media = mediaOf(name);
        const auto group = card_.labelOf(property.group);
        CardProperty result{std::move(name),
                            group.empty() ? typesOf(property, !media.empty()) : std::string(group),
                            {},
                            {}};
        if (auto nested = nestedCard(raw)) {
            result.components.push_back(*std::move(nested));
        } else if (auto binary = binaryOf(property, media)) {
            result.binary = std::move(binary);
        } else if (isList(result.name)) {
            appendTexts(result, card_.textOf(property));
            return;
        } else {
            addComponents(result, property);
            useParametersIfBlank(result, property);
        }
        result_.push_back(std::move(result));
    }

    void addComponents(CardProperty& result, const Property& property)
    {
        auto text = card_.textOf(property);
        if (!isStructured(result.name)) {
            const auto value = card_.unescaped(text);
            result.components.emplace_back(property.kind == PropertyKind::Phone ? withoutTel(value)
                                                                                : value);
            return;
        }
        // Escaped ones do not separate, so this may be a few too many.
        const auto separators = std::count(text.begin(), text.end(), ';');
        result.components.reserve(static_cast<std::size_t>(separators) + 1);
        for (bool hasMore = true; hasMore;) {
            const auto size = text.size();
            const auto component = takeComponent(text);
            result.components.emplace_back(card_.unescaped(component));
            hasMore = component.size() < size;
        }
    }

    static void useParametersIfBlank(CardProperty& result, const Property& property)
    {
        const auto& components = result.components;
        if (std::all_of(components.begin(), components.end(),
                        [](const std::string& text) { return trimmed(text).empty(); })) {
            if (auto value = valueInParameters(property, result.name); !value.empty()) {
                result.components = {std::move(value)};
            }
        }
    }

    /// Appends one property for each text of a list; one without text for an empty list.
    void appendTexts(const CardProperty& model, std::string_view list)
    {
        const auto before = result_.size();
        while (!list.empty()) {
            if (const auto text = trimmed(takeComponent(list, ',')); !text.empty()) {
                result_.push_back(model);
                result_.back().components.emplace_back(card_.unescaped(text));
            }
        }
        if (result_.size() == before) {
            result_.push_back(model);
            result_.back().components.emplace_back();
        }
    }

    std::optional<CardProperty::Binary> binaryOf(const Property& property, std::string_view media)
    {
        if (property.encoding.transfer != TransferEncoding::Base64) {
            const auto text = card_.textOf(property);
            return equalsIgnoringCase(text.substr(0, 5), "data:") ? dataOf(card_.unescaped(text))
                                                                  : std::nullopt;
        }
        auto bytes = decodeBase64(property.value);
        const bool isText = media.empty() && bytes &&
                            (!property.encoding.charset.empty() || isUtf8(*bytes)) &&
                            bytes->find('\0') == std::string::npos;
        if (!bytes || isText) {
            return std::nullopt;
        }
        return CardProperty::Binary{mediaTypeOf(property, media), *std::move(bytes)};
    }

    /// The card that an AGENT of several lines holds, its lines separated by line feeds.
    std::optional<std::string> nestedCard(const RawProperty& raw)
    {
        if (raw.property.kind != PropertyKind::Agent) {
            return std::nullopt;
        }
        const auto lines = card_.lines(raw);
        auto value = lines.substr(std::min(headOf(lines).colon + 1, lines.size()));
        value.remove_prefix(std::min(value.find_first_not_of(kWhiteSpace), value.size()));
        if (delimiterOf(value.substr(0, value.find_first_of("\r\n"))) != Delimiter::Begin) {
            return std::nullopt;
        }
        std::string text;
        Lines source(value);
        for (std::size_t position = 0; position < value.size();) {
            const auto line = source.at(position);
            text += text.empty() ? "" : "\n";
            text += value.substr(line.begin, line.end - line.begin);
            position = line.next;
        }
        return syntaxText(text);
    }

    Card& card_;
    std::optional<std::span<const std::string>> names_;
    std::vector<CardProperty> result_;
};

std::optional<std::vector<CardProperty>> read(std::string_view text, CardReader::Text kind,
                                              std::optional<std::span<const std::string>> names)
{
    std::array<std::byte, 2048> buffer{};
    std::pmr::monotonic_buffer_resource memory(buffer.data(), buffer.size());
    CardScanner scanner(text, kind, CardScanner::Properties::All, memory);
    constexpr std::size_t kUsualProperties = 8;
    scanner.card().reserve(kUsualProperties);
    if (names) {
        scanner.omitOrdinaryLinesBesides(*names);
    }
    if (!scanner.next()) {
        return std::nullopt;
    }
    return Converter(scanner.card(), names).properties();
}

}  // namespace

std::optional<std::vector<CardProperty>> readProperties(std::string_view text,
                                                        CardReader::Text kind)
{
    return read(text, kind, std::nullopt);
}

std::optional<std::vector<CardProperty>> readPropertiesNamed(std::span<const std::string> names,
                                                             std::string_view text,
                                                             CardReader::Text kind)
{
    return read(text, kind, names);
}

}  // namespace dunmora
