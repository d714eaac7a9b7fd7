#include "adapters/vcard/PropertyTypes.h"

#include <algorithm>
#include <array>

namespace dunmora {

namespace {

constexpr std::array<std::string_view, 13> kTypesWithoutLabel{
    "VOICE",  "PREF", "MSG",  "TEXT", "TEXTPHONE", "VIDEO", "INTERNET", "QUOTED-PRINTABLE",
    "BASE64", "B",    "7BIT", "8BIT", "BINARY"};

std::string_view unquoted(std::string_view type)
{
    const auto isAround = [](char c) { return isBlank(c) || c == '"'; };
    while (!type.empty() && isAround(type.front())) {
        type.remove_prefix(1);
    }
    while (!type.empty() && isAround(type.back())) {
        type.remove_suffix(1);
    }
    return type;
}

}  // namespace

std::string_view takeType(std::string_view& types)
{
    const auto comma = std::min(types.find(','), types.size());
    auto type = unquoted(types.substr(0, comma));
    types.remove_prefix(std::min(comma + 1, types.size()));
    // TEL;TYPE=HOME,TYPE=VOICE occurs in real cards.
    if (equalsIgnoringCase(type.substr(0, 5), "TYPE=")) {
        type.remove_prefix(5);
    }
    return type;
}

bool isLabelType(std::string_view type)
{
    return std::none_of(kTypesWithoutLabel.begin(), kTypesWithoutLabel.end(),
                        [&](std::string_view each) { return equalsIgnoringCase(type, each); });
}

}  // namespace dunmora
