#include "adapters/vcard/UidRegistry.h"

#include "text/LookAhead.h"
#include "text/SideBySide.h"

#include <xxhash.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <utility>

namespace dunmora {

namespace {

/// Returns a 128-bit hash of the content as hexadecimal digits. It has no key: an id must be the
/// same on every run.
std::string fingerprint(std::string_view content)
{
    const auto hash = XXH3_128bits(content.data(), content.size());
    std::array<char, 33> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx%016llx",
                  static_cast<unsigned long long>(hash.high64),
                  static_cast<unsigned long long>(hash.low64));
    return digits.data();
}

/// Adds people's UIDs to an empty index that has space for them, on several threads. Every thread
/// goes through all hashes and adds those that belong to its own part of the index.
class IndexFilling final {
public:
    IndexFilling(TextIndex& index, std::span<const Person> people,
                 std::span<const std::uint64_t> hashes)
        : index_(index), people_(people), hashes_(hashes)
    {
    }

    /// Returns whether no two UIDs are equal. If not, some of them are missing.
    bool run(std::size_t threads)
    {
        Positions leaving;
        std::mutex mutex;
        runSideBySide(threads, threads, [&](std::size_t number) {
            const auto ofPart = fill(index_.part(number, threads));
            const std::lock_guard lock(mutex);
            leaving.insert(leaving.end(), ofPart.begin(), ofPart.end());
        });
        for (const auto position : leaving) {
            const auto isAt = [&](std::size_t other) { return isSame(other, position); };
            const auto append = [&] { return position; };
            if (!index_.findOrAdd(hashes_[position], isAt, append).second) {
                areUnique_ = false;
            }
        }
        return areUnique_;
    }

private:
    using Positions = std::vector<std::size_t>;

    /// Fills a part. Returns the positions of UIDs that belong to it and have no place there.
    Positions fill(const TextIndex::Part& part)
    {
        Positions leaving;
        constexpr std::size_t kBlock = 1024;
        std::array<std::size_t, kBlock> ofPart{};
        for (std::size_t begin = 0; begin < hashes_.size() && areUnique_; begin += kBlock) {
            const auto end = std::min(begin + kBlock, hashes_.size());
            std::size_t count = 0;
            for (auto i = begin; i < end; ++i) {
                // Without a branch, which nobody could predict.
                ofPart[count] = i;
                count += index_.beginsIn(part, hashes_[i]) ? 1 : 0;
            }
            visitWithLookAhead<std::size_t>(
                count,
                [&](std::size_t i, std::size_t& position) {
                    position = ofPart[i];
                    index_.prefetch(hashes_[position]);
                },
                [&](std::size_t, std::size_t position) { add(part, position, leaving); });
        }
        return leaving;
    }

    void add(const TextIndex::Part& part, std::size_t position, Positions& leaving)
    {
        const auto isAt = [&](std::size_t other) { return isSame(other, position); };
        switch (index_.addIn(part, hashes_[position], position, isAt)) {
        case TextIndex::Addition::Done:
            break;
        case TextIndex::Addition::Known:
            areUnique_ = false;
            break;
        case TextIndex::Addition::LeavesPart:
            leaving.push_back(position);
            break;
        }
    }

    bool isSame(std::size_t first, std::size_t second) const
    {
        return people_[first].uid == people_[second].uid;
    }

    TextIndex& index_;
    std::span<const Person> people_;
    std::span<const std::uint64_t> hashes_;
    std::atomic<bool> areUnique_ = true;
};

}  // namespace

std::string_view UidRegistry::assign(std::string_view ownUid, std::uint64_t hash,
                                     std::string_view card)
{
    if (!ownUid.empty() && take(ownUid, hash)) {
        return ownUid;
    }
    const auto base = ownUid.empty() ? "card-" + fingerprint(card)
                                     : std::string(ownUid) + "-" + fingerprint(card);
    auto& copies = copies_[base];
    while (true) {
        ++copies;
        const auto candidate = copies == 1 ? base : base + "-" + std::to_string(copies);
        if (const auto kept = keep(candidate); take(kept, TextIndex::hashOf(kept))) {
            return kept;
        }
    }
}

bool UidRegistry::assignAll(std::span<const Person> people, std::span<const std::uint64_t> hashes,
                            std::size_t threads)
{
    if (count() > 0 || std::any_of(people.begin(), people.end(),
                                   [](const Person& person) { return person.uid.empty(); })) {
        return false;
    }
    index_.reset(people.size());
    if (!IndexFilling(index_, people, hashes).run(threads)) {
        index_.reset(people.size());
        return false;
    }
    people_ = people;
    return true;
}

void UidRegistry::copyIds()
{
    if (people_.empty()) {
        return;
    }
    std::vector<std::string_view> ids;
    ids.reserve(count());
    for (const auto& person : people_) {
        ids.push_back(person.uid);
    }
    ids.insert(ids.end(), taken_.begin(), taken_.end());
    taken_ = std::move(ids);
    people_ = {};
}

std::optional<std::size_t> UidRegistry::find(std::string_view uid) const
{
    const auto position =
        index_.find(uid, [&](std::size_t candidate) { return idAt(candidate) == uid; });
    return position == TextIndex::kNowhere ? std::nullopt : std::optional(position);
}

/// Records the id. Returns whether it was free.
bool UidRegistry::take(std::string_view uid, std::uint64_t hash)
{
    if (!index_.fits(count() + 1)) {
        rebuild(2 * count() + 1);
    }
    const auto isAt = [&](std::size_t number) { return idAt(number) == uid; };
    const auto append = [&] {
        taken_.push_back(uid);
        return count() - 1;
    };
    return index_.findOrAdd(hash, isAt, append).second;
}

void UidRegistry::reserve(std::size_t count)
{
    if (!index_.fits(count)) {
        rebuild(count);
    }
}

/// Rebuilds the index for `count` ids.
void UidRegistry::rebuild(std::size_t count)
{
    taken_.reserve(count - people_.size());
    index_.reset(count);
    for (std::size_t i = 0; i < this->count(); ++i) {
        index_.add(idAt(i), i);
    }
}

std::string_view UidRegistry::keep(const std::string& text)
{
    auto* place = static_cast<char*>(memory_.allocate(text.size(), 1));
    text.copy(place, text.size());
    return {place, text.size()};
}

}  // namespace dunmora
