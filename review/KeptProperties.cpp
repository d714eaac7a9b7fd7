#include "review/KeptProperties.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <iterator>
#include <limits>

namespace dunmora {

namespace {

constexpr auto kNoId = std::numeric_limits<std::uint32_t>::max();

/// The values from the first one on, up to that of the next index or the end.
std::span<const std::uint32_t> slice(const std::vector<std::uint32_t>& values, std::size_t begin,
                                     std::size_t end)
{
    return std::span(values).subspan(begin, end - begin);
}

/// Appends the other numbers, each increased by `offset`.
void appendAdded(std::vector<std::uint32_t>& numbers, const std::vector<std::uint32_t>& others,
                 std::uint32_t offset)
{
    const auto begin = numbers.size();
    numbers.resize(begin + others.size());
    std::transform(others.begin(), others.end(),
                   numbers.begin() + static_cast<std::ptrdiff_t>(begin),
                   [offset](std::uint32_t number) { return number + offset; });
}

/// Which keys may be in several rows: those that are, and a few others. The keys are hashes, so
/// their lowest bits tell most of them apart.
class RepeatedKeys final {
public:
    explicit RepeatedKeys(std::size_t keys)
        : words_(std::bit_ceil(keys * kBitsPerKey / kBitsPerWord + 1))
    {
    }

    void addRow(const CardKeys& card)
    {
        // A key that a row both needs and provides is in one row.
        for (const auto keys : {card.needed(), card.provided()}) {
            for (const auto key : keys) {
                auto& word = wordOf(key);
                word.inSeveralRows |= word.inARow & bitOf(key);
            }
        }
        for (const auto keys : {card.needed(), card.provided()}) {
            for (const auto key : keys) {
                wordOf(key).inARow |= bitOf(key);
            }
        }
    }

    bool mayContain(CardKeys::Key key) const
    {
        return (words_[indexOf(key)].inSeveralRows & bitOf(key)) != 0;
    }

private:
    static constexpr std::size_t kBitsPerKey = 4;
    static constexpr std::size_t kBitsPerWord = 64;

    struct Word {
        std::uint64_t inARow = 0;
        std::uint64_t inSeveralRows = 0;
    };

    static std::uint64_t bitOf(CardKeys::Key key) { return std::uint64_t{1} << key % kBitsPerWord; }
    std::size_t indexOf(CardKeys::Key key) const
    {
        return key / kBitsPerWord & (words_.size() - 1);
    }
    Word& wordOf(CardKeys::Key key) { return words_[indexOf(key)]; }

    std::vector<Word> words_;
};

/// One key of a row. Small, because a card may have a hundred thousand numbers with a dozen keys
/// each.
struct Use {
    CardKeys::Key key;
    std::uint32_t row;
    /// The place of the key among all that the group needs and, after those, provides.
    std::uint32_t place;
};

/// Whether one row needs the key, at a place below `needsEnd`, and another provides it.
bool isShared(std::span<const Use> uses, std::size_t needsEnd)
{
    constexpr auto kNobody = std::numeric_limits<std::uint32_t>::max();
    auto needs = kNobody;
    auto provides = kNobody;
    bool severalNeed = false;
    bool severalProvide = false;
    for (const auto& use : uses) {
        const bool isNeed = use.place < needsEnd;
        auto& first = isNeed ? needs : provides;
        auto& several = isNeed ? severalNeed : severalProvide;
        several = several || (first != kNobody && first != use.row);
        first = use.row;
    }
    return needs != kNobody && provides != kNobody &&
           (needs != provides || severalNeed || severalProvide);
}

}  // namespace

void KeptProperties::addGroup(std::span<const CardKeys> cards)
{
    const auto ids = number(cards);
    firstRows_.push_back(static_cast<std::uint32_t>(rows_.size()));
    const auto* need = ids.needed.data();
    const auto* provision = ids.provided.data();
    for (const auto& card : cards) {
        addRow();
        for (std::size_t property = 0; property < card.size(); ++property) {
            properties_.push_back(static_cast<std::uint32_t>(needed_.size()));
            const auto* const end = need + card.neededBy(property).size();
            std::copy_if(need, end, std::back_inserter(needed_), [](Id id) { return id != kNoId; });
            need = end;
        }
        std::vector<Id> provided(provision, provision + card.provided().size());
        provision += provided.size();
        std::erase(provided, kNoId);
        std::sort(provided.begin(), provided.end());
        provided.erase(std::unique(provided.begin(), provided.end()), provided.end());
        for (const auto id : provided) {
            ++kept_[id];
        }
        provided_.insert(provided_.end(), provided.begin(), provided.end());
    }
}

void KeptProperties::addGroupOfEqual(std::size_t rows)
{
    const auto id = static_cast<Id>(kept_.size());
    kept_.push_back(static_cast<std::uint32_t>(rows));
    firstRows_.push_back(static_cast<std::uint32_t>(rows_.size()));
    for (std::size_t i = 0; i < rows; ++i) {
        addRow();
        properties_.push_back(static_cast<std::uint32_t>(needed_.size()));
        needed_.push_back(id);
        provided_.push_back(id);
    }
}

void KeptProperties::append(const KeptProperties& groups)
{
    const auto group = static_cast<std::uint32_t>(firstRows_.size());
    const auto property = static_cast<std::uint32_t>(properties_.size());
    const auto provided = static_cast<std::uint32_t>(provided_.size());
    const auto id = static_cast<Id>(kept_.size());
    appendAdded(firstRows_, groups.firstRows_, static_cast<std::uint32_t>(rows_.size()));
    appendAdded(properties_, groups.properties_, static_cast<std::uint32_t>(needed_.size()));
    appendAdded(needed_, groups.needed_, id);
    appendAdded(provided_, groups.provided_, id);
    kept_.insert(kept_.end(), groups.kept_.begin(), groups.kept_.end());
    for (auto row : groups.rows_) {
        row.group += group;
        row.firstProperty += property;
        row.firstProvided += provided;
        rows_.push_back(row);
    }
}

void KeptProperties::rowsEdited(std::span<const std::size_t> rows,
                                const std::function<bool(std::size_t row)>& isChecked)
{
    std::vector<std::uint32_t> changedGroups;
    for (const auto row : rows) {
        if (row < rows_.size() && setChecked(row, isChecked(row)) &&
            (changedGroups.empty() || changedGroups.back() != rows_[row].group)) {
            changedGroups.push_back(rows_[row].group);
        }
    }
    for (const auto row : rows) {
        if (row < rows_.size()) {
            judge(row);
        }
    }
    std::sort(changedGroups.begin(), changedGroups.end());
    changedGroups.erase(std::unique(changedGroups.begin(), changedGroups.end()),
                        changedGroups.end());
    for (const auto group : changedGroups) {
        for (std::size_t row = firstRows_[group]; row < groupEnd(group); ++row) {
            judge(row);
        }
    }
}

std::size_t KeptProperties::propertiesOf(std::size_t row) const
{
    const auto end = row + 1 < rows_.size() ? rows_[row + 1].firstProperty : properties_.size();
    return end - rows_[row].firstProperty;
}

bool KeptProperties::isKept(std::size_t row, std::size_t property) const
{
    const auto needed = neededBy(rows_[row].firstProperty + property);
    if (rows_[row].isChecked) {
        return std::any_of(needed.begin(), needed.end(), [&](Id id) { return kept_[id] > 0; });
    }
    const auto provided = providedBy(row);
    return std::any_of(needed.begin(), needed.end(), [&](Id id) {
        return kept_[id] > (std::binary_search(provided.begin(), provided.end(), id) ? 1U : 0U);
    });
}

std::vector<std::size_t> KeptProperties::otherKeptRows(std::size_t row, std::size_t most) const
{
    std::vector<std::size_t> found;
    const auto group = rows_[row].group;
    for (std::size_t other = firstRows_[group]; other < groupEnd(group) && found.size() < most;
         ++other) {
        if (other != row && !rows_[other].isChecked) {
            found.push_back(other);
        }
    }
    return found;
}

/// Adds a row of the last group, without its properties.
void KeptProperties::addRow()
{
    auto& row = rows_.emplace_back();
    row.group = static_cast<std::uint32_t>(firstRows_.size() - 1);
    row.firstProperty = static_cast<std::uint32_t>(properties_.size());
    row.firstProvided = static_cast<std::uint32_t>(provided_.size());
}

KeptProperties::Ids KeptProperties::number(std::span<const CardKeys> cards)
{
    Ids ids;
    std::size_t needs = 0;
    std::size_t provisions = 0;
    for (const auto& card : cards) {
        needs += card.needed().size();
        provisions += card.provided().size();
    }
    ids.needed.assign(needs, kNoId);
    ids.provided.assign(provisions, kNoId);

    // Only these are sorted: a card may have a million numbers of which no other one has any.
    RepeatedKeys repeated(needs + provisions);
    for (const auto& card : cards) {
        repeated.addRow(card);
    }
    std::vector<Use> uses;
    std::uint32_t place = 0;
    const auto addUses = [&](std::span<const CardKeys::Key> keys, std::size_t row) {
        for (const auto key : keys) {
            if (repeated.mayContain(key)) {
                uses.push_back({key, static_cast<std::uint32_t>(row), place});
            }
            ++place;
        }
    };
    for (std::size_t row = 0; row < cards.size(); ++row) {
        addUses(cards[row].needed(), row);
    }
    for (std::size_t row = 0; row < cards.size(); ++row) {
        addUses(cards[row].provided(), row);
    }
    std::sort(uses.begin(), uses.end(), [](const Use& a, const Use& b) { return a.key < b.key; });
    for (std::size_t begin = 0; begin < uses.size();) {
        auto end = begin + 1;
        while (end < uses.size() && uses[end].key == uses[begin].key) {
            ++end;
        }
        const auto same = std::span(uses).subspan(begin, end - begin);
        if (isShared(same, needs)) {
            for (const auto& use : same) {
                auto& id =
                    use.place < needs ? ids.needed[use.place] : ids.provided[use.place - needs];
                id = static_cast<Id>(kept_.size());
            }
            kept_.push_back(0);
        }
        begin = end;
    }
    return ids;
}

std::span<const KeptProperties::Id> KeptProperties::neededBy(std::size_t property) const
{
    const auto end = property + 1 < properties_.size() ? properties_[property + 1] : needed_.size();
    return slice(needed_, properties_[property], end);
}

std::span<const KeptProperties::Id> KeptProperties::providedBy(std::size_t row) const
{
    const auto end = row + 1 < rows_.size() ? rows_[row + 1].firstProvided : provided_.size();
    return slice(provided_, rows_[row].firstProvided, end);
}

std::size_t KeptProperties::groupEnd(std::size_t group) const
{
    return group + 1 < firstRows_.size() ? firstRows_[group + 1] : rows_.size();
}

bool KeptProperties::setChecked(std::size_t row, bool checked)
{
    if (rows_[row].isChecked == checked) {
        return false;
    }
    rows_[row].isChecked = checked;
    bool changed = false;
    for (const auto id : providedBy(row)) {
        kept_[id] = checked ? kept_[id] - 1 : kept_[id] + 1;
        changed = changed || kept_[id] == (checked ? 0U : 1U);
    }
    return changed;
}

void KeptProperties::judge(std::size_t row)
{
    auto& judged = rows_[row];
    bool holdsUnique = false;
    if (judged.isChecked) {
        const auto properties = propertiesOf(row);
        for (std::size_t property = 0; property < properties && !holdsUnique; ++property) {
            holdsUnique = !isKept(row, property);
        }
    }
    count_ -= judged.holdsUnique ? 1 : 0;
    judged.holdsUnique = holdsUnique;
    count_ += holdsUnique ? 1 : 0;
}

}  // namespace dunmora
