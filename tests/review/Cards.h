#pragma once

#include "platform/CardSource.h"
#include "platform/PersonCard.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
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

    bool compareStored(std::span<const std::string> uids,
                       CardDifferences& differences) const override
    {
        differences = {};
        for (const auto& uid : uids) {
            if (!comparable.contains(uid)) {
                return false;
            }
            const auto& one = byUid.find(uids.front())->second;
            const auto& other = byUid.find(uid)->second;
            addMissing(one, other, differences.names);
            addMissing(other, one, differences.names);
            differences.sources.push_back(&other.source);
        }
        return true;
    }

    std::optional<std::vector<CardProperty>>
    propertiesNamed(std::string_view uid, std::span<const std::string> names) const override
    {
        if (!canReadNamed) {
            return std::nullopt;
        }
        auto properties = byUid.find(uid)->second.properties;
        std::erase_if(properties, [&](const CardProperty& property) {
            return std::find(names.begin(), names.end(), property.name) == names.end();
        });
        return properties;
    }

    std::map<std::string, PersonCard, std::less<>> byUid;
    /// The uids of cards that can be compared without being read.
    std::set<std::string, std::less<>> comparable;
    bool canReadNamed = true;
    /// How many whole cards have been read.
    mutable int readings = 0;

private:
    static void addMissing(const PersonCard& card, const PersonCard& other,
                           std::vector<std::string>& names)
    {
        for (const auto& property : card.properties) {
            const auto& others = other.properties;
            if (std::find(others.begin(), others.end(), property) == others.end() &&
                std::find(names.begin(), names.end(), property.name) == names.end()) {
                names.push_back(property.name);
            }
        }
    }
};

}  // namespace dunmora::test
