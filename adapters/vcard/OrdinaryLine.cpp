#include "adapters/vcard/OrdinaryLine.h"

#include "adapters/vcard/NameKey.h"

namespace dunmora {

std::optional<OrdinaryHead> ordinaryHeadOf(std::string_view line)
{
    NameKey key;
    std::size_t end = 0;
    while (end < line.size() && key.append(line[end])) {
        ++end;
    }
    if (end == 0 || end == line.size() || (line[end] != ':' && line[end] != ';')) {
        return std::nullopt;
    }
    if (end > NameKey::kLongest) {
        return OrdinaryHead{propertyKind(line.substr(0, end)), end};
    }
    if (key.value() == NameKey::of("BEGIN") || key.value() == NameKey::of("END")) {
        return std::nullopt;
    }
    return OrdinaryHead{propertyKindOf(key.value()), end};
}

}  // namespace dunmora
