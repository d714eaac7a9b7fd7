#include "adapters/vcard/StoredProperties.h"

#include "adapters/vcard/Lines.h"
#include "adapters/vcard/NameKey.h"
#include "adapters/vcard/Property.h"
#include "text/Ascii.h"
#include "text/Utf8.h"
#include "text/WhiteSpace.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace dunmora {

namespace {

/// The name at the beginning of a property's first line, after its group. Nothing unless both
/// consist of letters, digits and hyphens, the head ends in this line, and the property is one that
/// cannot contain a card.
std::optional<std::string_view> nameIn(std::string_view line)
{
    std::size_t begin = 0;
    NameKey key;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (key.append(line[i])) {
            continue;
        }
        const auto name = line.substr(begin, i - begin);
        if (name.empty()) {
            return std::nullopt;
        }
        if (line[i] == '.') {
            begin = i + 1;
            key = NameKey();
            continue;
        }
        const bool isHead =
            line[i] == ':' || (line[i] == ';' && line.find(':', i) != std::string_view::npos);
        const bool isKnown = name.size() <= NameKey::kLongest;
        if (!isHead || (isKnown && (key.value() == NameKey::of("AGENT") ||
                                    key.value() == NameKey::of("BEGIN") ||
                                    key.value() == NameKey::of("END")))) {
            return std::nullopt;
        }
        return name;
    }
    return std::nullopt;
}

/// Whether a "=" at the end of a line of the property may join the next line to it.
bool mayBeQuotedPrintable(std::string_view firstLine)
{
    return std::any_of(firstLine.begin(), firstLine.end(),
                       [](char c) { return c == 'q' || c == 'Q'; });
}

}  // namespace

bool splitStored(std::string_view card, std::vector<StoredProperty>& properties)
{
    properties.clear();
    std::string_view firstLine;
    Lines lines(card);
    // The first line is BEGIN.
    for (auto line = lines.at(0); line.next < card.size();) {
        line = lines.at(line.next);
        const auto content = card.substr(line.begin, line.end - line.begin);
        if (!content.empty() && isBlank(content.front())) {
            // An indented delimiter may be one or not.
            if (properties.empty() || delimiterOf(content) != Delimiter::None) {
                return false;
            }
            auto& text = properties.back().text;
            const auto begin = static_cast<std::size_t>(text.data() - card.data());
            text = card.substr(begin, line.end - begin);
        } else if (const auto name = nameIn(content)) {
            properties.push_back({*name, content});
            firstLine = content;
        } else {
            return delimiterOf(content) == Delimiter::End && line.next == card.size();
        }
        if (content.back() == '=' && mayBeQuotedPrintable(firstLine)) {
            return false;
        }
    }
    return false;
}

bool showsName(std::string_view line)
{
    const auto colon = line.find(':');
    const auto name = line.substr(0, colon);
    if (colon == std::string_view::npos ||
        (!equalsIgnoringCase(name, "N") && !equalsIgnoringCase(name, "FN"))) {
        return false;
    }
    auto value = line.substr(colon + 1);
    // Whatever would have to be decoded first: escapes, other lines, URIs of data.
    if (value.find_first_of("\\\r\n") != std::string_view::npos || !isUtf8(value) ||
        equalsIgnoringCase(value.substr(0, 5), "data:")) {
        return false;
    }
    while (!value.empty()) {
        if (!showsNothing(takeComponent(value))) {
            return true;
        }
    }
    return false;
}

}  // namespace dunmora
