#pragma once

#include "platform/CardSource.h"
#include "platform/PersonCard.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {

inline CardProperty text(std::string name, std::string value, std::string label = {})
{
    return {std::move(name), std::move(label), {std::move(value)}, std::nullopt};
}

inline CardProperty structured(std::string name, std::vector<std::string> components,
                               std::string label = {})
{
    return {std::move(name), std::move(label), std::move(components), std::nullopt};
}

inline CardProperty binary(std::string name, std::string bytes,
                           std::string mediaType = "image/jpeg")
{
    return {std::move(name), "", {}, CardProperty::Binary{std::move(mediaType), std::move(bytes)}};
}

inline PersonCard card(std::vector<CardProperty> properties, std::vector<std::string> lists = {})
{
    return {std::move(properties), std::move(lists), {"book.vcf", "book"}};
}

/// Cards in memory, by their uids; those that a test removes cannot be read.
class FakeCards final : public CardSource {
public:
    std::string cards(std::span<const Person* const> /*people*/) const override { return {}; }
    std::optional<PersonCard> card(std::string_view uid) const override
    {
        ++readings;
        const auto found = byUid.find(uid);
        return found == byUid.end() ? std::nullopt : std::optional(found->second);
    }

    std::optional<StoredCard> storedCard(std::string_view uid) const override
    {
        const auto found = storedByUid.find(uid);
        return found == storedByUid.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::string, PersonCard, std::less<>> byUid;
    std::map<std::string, StoredCard, std::less<>> storedByUid;
    mutable int readings = 0;
};

}  // namespace dunmora::test
