#include "review/UniqueProperties.h"

#include "engine/ContactsParser.h"
#include "platform/CardSource.h"
#include "platform/PlatformError.h"
#include "review/CardKeys.h"
#include "review/CheckedPeople.h"
#include "review/ComparedGroups.h"
#include "review/DuplicateGroups.h"
#include "review/SubstituteName.h"
#include "text/SideBySide.h"
#include "text/TextHash.h"

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>
#include <string_view>
#include <utility>

namespace dunmora {

namespace {

constexpr auto kNoSource = std::numeric_limits<std::uint32_t>::max();
/// Instead of a number of names, for a group whose cards were read.
constexpr auto kNotCompared = std::numeric_limits<std::uint32_t>::max();

/// With how many kept copies a card is compared line by line. More would take a while to read and
/// tell the user nothing more.
constexpr std::size_t kMostKeptShown = 16;

/// As many texts as a tall window shows.
constexpr std::size_t kMostTexts = 256;

}  // namespace

/// Adds one group after another to an empty object.
class UniqueProperties::Reading final {
public:
    Reading(UniqueProperties& to, const CardSource& cards) : to_(to), cards_(cards) {}

    /// Adds groups that the book has compared.
    void add(const ComparedGroups& groups)
    {
        to_.kept_.append(groups.kept());
        for (const auto* const source : groups.sources()) {
            to_.rows_.push_back({0, numberOf(*source), HashState::WhenAsked});
        }
        std::vector<std::uint32_t> numbers;
        for (const auto& names : groups.names()) {
            numbers.push_back(numberOf(names));
        }
        for (const auto names : groups.namesOfGroup()) {
            to_.namesOfGroup_.push_back(numbers[names]);
        }
    }

    /// Adds a group and reads the cards of its people.
    void add(GroupUids uids)
    {
        keys_.resize(std::max(keys_.size(), uids.size()));
        for (std::size_t i = 0; i < uids.size(); ++i) {
            if (const auto card = cards_.card(uids[i])) {
                keys_[i].read(*card);
                to_.rows_.push_back({hashOf(*card), numberOf(card->source), HashState::Known});
            } else {
                keys_[i].setUnknown();
                to_.rows_.push_back({0, kNoSource, HashState::Unreadable});
            }
        }
        to_.kept_.addGroup(std::span(keys_).first(uids.size()));
        to_.namesOfGroup_.push_back(kNotCompared);
    }

private:
    /// The place of the names in the list of different ones.
    std::uint32_t numberOf(const Names& names)
    {
        const auto [found, isNew] =
            numbersOfNames_.try_emplace(names, static_cast<std::uint32_t>(to_.names_.size()));
        if (isNew) {
            to_.names_.push_back(names);
        }
        return found->second;
    }

    /// The source's place in the list of different sources.
    std::uint32_t numberOf(const PersonSource& source)
    {
        auto& sources = to_.sources_;
        // Most rows are from the book or file of the row before.
        if (last_ < sources.size() && sources[last_].address == source.address) {
            return last_;
        }
        const auto [found, isNew] =
            numbers_.try_emplace(source.address, static_cast<std::uint32_t>(sources.size()));
        if (isNew) {
            sources.push_back(source);
        }
        last_ = found->second;
        return last_;
    }

    UniqueProperties& to_;
    const CardSource& cards_;
    // Reused, so that a group costs no allocations.
    std::vector<CardKeys> keys_;
    std::map<Names, std::uint32_t> numbersOfNames_;
    std::unordered_map<std::string, std::uint32_t, TextHash> numbers_;
    std::uint32_t last_ = 0;
};

/// Compares groups, many at a time on several threads, and adds them in their order.
class UniqueProperties::Comparing final {
public:
    Comparing(Reading& reading, const CardSource& cards, std::size_t threads)
        : reading_(reading), cards_(cards), threads_(threads)
    {
    }

    void add(GroupUids uids)
    {
        groups_.push_back(uids);
        rows_ += uids.size();
        if (rows_ >= kMostRows) {
            finish();
        }
    }

    /// To be called after the last group.
    void finish()
    {
        std::size_t group = 0;
        for (const auto& runs : compareGroups(groups_, cards_, threads_, kRowsInPart)) {
            for (const auto& run : runs) {
                reading_.add(run);
                group += run.count();
                if (&run != &runs.back()) {
                    reading_.add(groups_[group++]);
                }
            }
        }
        groups_.clear();
        rows_ = 0;
    }

private:
    /// Some milliseconds of work: less is not worth a thread.
    static constexpr std::size_t kRowsInPart = 1024;
    /// A few megabytes while they wait for being added.
    static constexpr std::size_t kMostRows = 64 * kRowsInPart;

    Reading& reading_;
    const CardSource& cards_;
    const std::size_t threads_;
    std::vector<GroupUids> groups_;
    std::size_t rows_ = 0;
};

void UniqueProperties::read(const ContactsParser& engine, const CardSource* cards, Hashes hashes)
{
    read(engine, cards, hashes, processors());
}

void UniqueProperties::read(const ContactsParser& engine, const CardSource* cards, Hashes hashes,
                            std::size_t threads)
{
    clear();
    if (cards == nullptr) {
        return;
    }
    engine_ = &engine;
    cards_ = cards;
    rows_.reserve(engine.duplicates().size());
    Reading reading(*this, *cards);
    Comparing comparing(reading, *cards, threads);
    visitDuplicateGroups(engine, [&](const DuplicateGroup& group) {
        if (hashes == Hashes::Kept) {
            reading.add(group.uids);
        } else {
            comparing.add(group.uids);
        }
    });
    comparing.finish();
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
    const auto isKept = keptOf(row, *card);
    std::size_t property = 0;
    for (auto& line : cardLines(*card, {})) {
        if (!isKept[property++]) {
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
    const auto isKept = keptOf(row, *card);
    return cardLines(*card, kept, [&](std::size_t property) { return isKept[property]; });
}

std::optional<std::uint64_t> UniqueProperties::cardHash(std::size_t row) const
{
    if (row >= rows_.size() || rows_[row].state == HashState::Unreadable) {
        return std::nullopt;
    }
    if (rows_[row].state == HashState::Known) {
        return rows_[row].cardHash;
    }
    const auto card = cardOf(row);
    return card ? std::optional(hashOf(*card)) : std::nullopt;
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

/// Whether an unchecked copy has them, for each of the card's compared properties.
std::vector<bool> UniqueProperties::keptOf(std::size_t row, const PersonCard& card) const
{
    const auto names = namesOfGroup_[kept_.groupOf(row)];
    // What all copies have is one property, the first.
    std::size_t next = names == kNotCompared ? 0 : 1;
    const auto isOfAll = [&](const CardProperty& property) {
        return names != kNotCompared && std::find(names_[names].begin(), names_[names].end(),
                                                  property.name) == names_[names].end();
    };
    std::vector<bool> kept;
    for (const auto& property : card.properties) {
        if (!isIgnored(property)) {
            kept.push_back(kept_.isKept(row, isOfAll(property) ? 0 : next++));
        }
    }
    for (std::size_t i = 0; i < card.lists.size(); ++i) {
        kept.push_back(kept_.isKept(row, names != kNotCompared ? 0 : next++));
    }
    return kept;
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
    // A stored card stays the same.
    return card && (rows_[row].state == HashState::WhenAsked || hashOf(*card) == cardHash(row))
               ? std::move(card)
               : std::nullopt;
}

}  // namespace dunmora
