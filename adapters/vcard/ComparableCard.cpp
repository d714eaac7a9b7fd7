#include "adapters/vcard/ComparableCard.h"

#include "adapters/vcard/Lines.h"
#include "adapters/vcard/Property.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace dunmora {

namespace {

std::string upperCase(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), toUpperAscii);
    return upper;
}

bool isBookkeeping(std::string_view name)
{
    constexpr std::array<std::string_view, 9> kNames{"BEGIN",
                                                     "END",
                                                     "VERSION",
                                                     "UID",
                                                     "REV",
                                                     "PRODID",
                                                     "X-ABUID",
                                                     "X-EVOLUTION-WEBDAV-ETAG",
                                                     "X-EVOLUTION-WEBDAV-HREF"};
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

std::string withoutQuotes(std::string_view text)
{
    std::string plain(text);
    std::erase(plain, '"');
    return plain;
}

/// The parameters in one spelling: TYPE="home,voice", TYPE=HOME;TYPE=VOICE and HOME;VOICE, as vCard
/// 2.1 writes it, are the same.
std::string comparableParameters(std::string_view parameters)
{
    // Evolution Data Server adds it to telephone numbers.
    constexpr std::string_view kInternational = "X-EVOLUTION-E164";
    std::vector<std::string> texts;
    while (!parameters.empty()) {
        const auto [name, value] = takeParameter(parameters);
        const auto upper = upperCase(name);
        if (name.empty() || upper == "TYPE") {
            const auto types = upperCase(withoutQuotes(value));
            for (std::size_t begin = 0; begin <= types.size();) {
                const auto end = std::min(types.find(',', begin), types.size());
                texts.push_back("TYPE=" + types.substr(begin, end - begin));
                begin = end + 1;
            }
        } else if (upper != kInternational) {
            texts.push_back(upper + "=" + withoutQuotes(value));
        }
    }
    std::sort(texts.begin(), texts.end());
    std::string all;
    for (const auto& text : texts) {
        all += ";" + text;
    }
    return all;
}

/// A property in one spelling; empty when it does not count.
std::string comparableProperty(std::string_view property)
{
    const auto head = headOf(property);
    if (!head.isComplete) {
        return std::string(trimmed(property));
    }
    const auto [group, name] = splitName(property.substr(0, head.nameEnd));
    const auto upper = upperCase(name);
    if (isBookkeeping(upper)) {
        return {};
    }
    return upperCase(group) + "." + upper +
           comparableParameters(property.substr(head.nameEnd, head.colon - head.nameEnd)) +
           std::string(property.substr(head.colon));
}

}  // namespace

std::string comparableCard(std::string_view card)
{
    std::vector<std::string> properties;
    Lines lines(card);
    for (std::size_t begin = 0; begin < card.size();) {
        auto line = lines.at(begin);
        while (line.next < card.size() && isBlank(card[line.next])) {
            line = lines.at(line.next);
        }
        auto property = comparableProperty(
            unfold(card.substr(begin, line.end - begin), FoldBlank::Remove, SoftBreaks::Keep));
        if (!property.empty()) {
            properties.push_back(std::move(property));
        }
        begin = line.next;
    }
    std::sort(properties.begin(), properties.end());
    std::string text;
    for (const auto& property : properties) {
        text += property + '\n';
    }
    return text;
}

}  // namespace dunmora
