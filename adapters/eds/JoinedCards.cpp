#include "adapters/eds/JoinedCards.h"

#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

}  // namespace

JoinedCards::JoinedCards(const std::vector<ContactText>& contacts)
{
    std::size_t size = 0;
    for (const auto& contact : contacts) {
        size += contact.card.size() + kLineEnd.size();
    }
    text_.reserve(size);
    places_.reserve(contacts.size());
    for (const auto& contact : contacts) {
        const auto& card = contact.card;
        const auto begin = text_.size();
        text_ += card;
        text_ += card.ends_with('\n') ? "" : kLineEnd;
        places_.push_back({begin, card.size(), text_.size()});
    }
}

std::string_view JoinedCards::card(std::size_t contact) const
{
    const auto& place = places_[contact];
    return std::string_view(text_).substr(place.begin, place.size);
}

std::vector<JoinedCards::Content> JoinedCards::read(CardReader& reader) const
{
    auto contents = readTogether(reader);
    return contents ? *std::move(contents) : readOneByOne(reader);
}

/// Nothing unless each contact's text is one whole card, which no text around it can change.
std::optional<std::vector<JoinedCards::Content>> JoinedCards::readTogether(CardReader& reader) const
{
    CardReader::Cards cards;
    reader.read(text_, CardReader::Text::Utf8, cards);
    std::vector<Content> contents;
    contents.reserve(places_.size());
    std::size_t person = 0;
    std::size_t group = 0;
    const auto isAt = [](const std::vector<CardRange>& ranges, std::size_t i, const Place& place) {
        return i < ranges.size() && ranges[i].begin == place.begin && ranges[i].end == place.next;
    };
    for (const auto& place : places_) {
        if (isAt(cards.ranges, person, place)) {
            contents.push_back({cards.people[person], false});
            ++person;
        } else if (isAt(cards.groups, group, place)) {
            contents.push_back({std::nullopt, true});
            ++group;
        } else {
            return std::nullopt;
        }
    }
    return contents;
}

std::vector<JoinedCards::Content> JoinedCards::readOneByOne(CardReader& reader) const
{
    std::vector<Content> contents;
    contents.reserve(places_.size());
    CardReader::Cards cards;
    for (std::size_t contact = 0; contact < places_.size(); ++contact) {
        cards.people.clear();
        cards.ranges.clear();
        cards.groups.clear();
        reader.read(card(contact), CardReader::Text::Utf8, cards);
        auto& content = contents.emplace_back();
        if (cards.people.size() == 1) {
            content.person = cards.people.front();
        }
        content.hasList = !cards.groups.empty();
    }
    return contents;
}

}  // namespace dunmora
