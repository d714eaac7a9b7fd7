#include "review/UniqueProperties.h"

#include "engine/ContactsParser.h"
#include "platform/CardSource.h"
#include "platform/PlatformError.h"
#include "review/CheckedPeople.h"
#include "review/DuplicateGroups.h"
#include "review/SubstituteName.h"
#include "text/TextHash.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string_view>
#include <utility>

namespace dunmora {

namespace {

constexpr auto kNoSource = std::numeric_limits<std::uint32_t>::max();

/// With how many kept copies a card is compared line by line. More would take a while to read and
/// tell the user nothing more.
constexpr std::size_t kMostKeptShown = 16;

/// As many texts as a tall window shows.
constexpr std::size_t kMostTexts = 256;

/// Numbers the different sources.
class SourceNumbers final {
public:
    explicit SourceNumbers(std::vector<PersonSource>& sources) : sources_(sources) {}

    std::uint32_t of(PersonSource source)
    {
        const auto [found, isNew] =
            numbers_.try_emplace(source.address, static_cast<std::uint32_t>(sources_.size()));
        if (isNew) {
            sources_.push_back(std::move(source));
        }
        return found->second;
    }

private:
    std::vector<PersonSource>& sources_;
    std::unordered_map<std::string, std::uint32_t, TextHash> numbers_;
};

}  // namespace

void UniqueProperties::read(const ContactsParser& engine, const CardSource* cards)
{
    clear();
    if (cards == nullptr) {
        return;
    }
    engine_ = &engine;
    cards_ = cards;
    rows_.reserve(engine.duplicates().size());
    SourceNumbers sources(sources_);
    // Reused, so that a group costs no allocations.
    std::vector<CardKeys> keys;
    for (const auto& group : duplicateGroups(engine)) {
        keys.resize(std::max(keys.size(), group.uids.size()));
        for (std::size_t i = 0; i < group.uids.size(); ++i) {
            auto card = cards->card(group.uids[i]);
            if (card) {
                keys[i].read(*card);
                rows_.push_back({hashOf(*card), sources.of(std::move(card->source))});
            } else {
                keys[i].setUnknown();
                rows_.push_back({std::nullopt, kNoSource});
            }
        }
        kept_.addGroup(std::span(keys).first(group.uids.size()));
    }
    std::vector<std::size_t> all(rows_.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    rowsEdited(engine, all);
}

void UniqueProperties::rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows)
{
    if (rows_.empty()) {
        return;
    }
    texts_.clear();
    kept_.rowsEdited(rows, [&](std::size_t row) { return isCheckedRow(engine, row); });
}

bool UniqueProperties::has(std::size_t row) const
{
    return row < rows_.size() && kept_.isOnlyInRow(row);
}

std::optional<std::size_t> UniqueProperties::nextRow(std::optional<std::size_t> row) const
{
    if (count() == 0) {
        return std::nullopt;
    }
    const auto first = row ? *row + 1 : 0;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const auto next = (first + i) % rows_.size();
        if (has(next)) {
            return next;
        }
    }
    return std::nullopt;
}

std::vector<OnlyHere> UniqueProperties::onlyHere(std::size_t row) const
{
    std::vector<OnlyHere> found;
    const auto card = has(row) ? comparedCardOf(row) : std::nullopt;
    if (!card) {
        return found;
    }
    std::size_t property = 0;
    for (auto& line : cardLines(*card, {})) {
        if (!kept_.isKept(row, property++)) {
            found.push_back({std::move(line.property), std::move(line.value)});
        }
    }
    return found;
}

std::string UniqueProperties::text(std::size_t row) const
{
    if (!has(row)) {
        return {};
    }
    if (const auto known = texts_.find(row); known != texts_.end()) {
        return known->second;
    }
    if (texts_.size() >= kMostTexts) {
        texts_.clear();
    }
    const auto properties = onlyHere(row);
    auto text = properties.empty() ? std::string("This copy’s card could not be read. It may hold "
                                                 "something that is only here.")
                                   : "Only here: " + enumeratedText(properties) + ".";
    return texts_[row] = std::move(text);
}

std::optional<std::vector<CardLine>> UniqueProperties::lines(std::size_t row) const
{
    const auto card = comparedCardOf(row);
    if (!card) {
        return std::nullopt;
    }
    std::vector<PersonCard> kept;
    for (const auto other : kept_.otherKeptRows(row, kMostKeptShown)) {
        // A card that cannot be read is still one that is kept.
        kept.push_back(cardOf(other).value_or(PersonCard()));
    }
    if (kept.empty() && !kept_.isChecked(row)) {
        return cardLines(*card, kept);
    }
    return cardLines(*card, kept,
                     [&](std::size_t property) { return kept_.isKept(row, property); });
}

std::optional<std::uint64_t> UniqueProperties::cardHash(std::size_t row) const
{
    return row < rows_.size() ? rows_[row].cardHash : std::nullopt;
}

const PersonSource* UniqueProperties::source(std::size_t row) const
{
    return row < rows_.size() && rows_[row].source != kNoSource ? &sources_[rows_[row].source]
                                                                : nullptr;
}

std::string UniqueProperties::substituteName(std::size_t row) const
{
    if (row >= rows_.size() || row >= engine_->duplicates().size()) {
        return {};
    }
    const auto* const record = engine_->recordInRow(row);
    return record == nullptr ? std::string() : dunmora::substituteName(*record, cards_);
}

std::optional<PersonCard> UniqueProperties::cardOf(std::size_t row) const
{
    if (row >= rows_.size() || row >= engine_->duplicates().size()) {
        return std::nullopt;
    }
    try {
        return cards_->card(engine_->duplicates()[row]);
    } catch (const PlatformError&) {
        return std::nullopt;
    }
}

std::optional<PersonCard> UniqueProperties::comparedCardOf(std::size_t row) const
{
    auto card = cardOf(row);
    return card && hashOf(*card) == rows_[row].cardHash ? std::move(card) : std::nullopt;
}

}  // namespace dunmora
