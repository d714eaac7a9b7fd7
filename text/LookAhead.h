#pragma once

#include <array>
#include <cstddef>

namespace dunmora {

/// How many items lie between the preparation of an item and its visit: enough for memory to
/// arrive, few enough for it to be still in the processor's cache.
inline constexpr std::size_t kLookAhead = 16;

/// Visits the items 0 to `count` - 1 in order, and prepares each of them, in order, `kLookAhead`
/// items before its visit. A table much larger than the processor's cache makes every look-up wait
/// for memory; a preparation that prefetches the slot hides this wait behind the visits before.
///
/// `prepare(item, prepared)` leaves in `prepared` what the visit needs, such as the hash; it finds
/// there what an earlier item left, so that a text's memory is used again. `visit(item, prepared)`
/// gets the same object. Errors: what the two throw; nothing more is then prepared or visited.
template <typename Prepared, typename Prepare, typename Visit>
void visitWithLookAhead(std::size_t count, Prepare prepare, Visit visit)
{
    std::array<Prepared, kLookAhead> ahead{};
    for (std::size_t step = 0; step < count + kLookAhead; ++step) {
        auto& prepared = ahead[step % kLookAhead];
        if (step >= kLookAhead && step - kLookAhead < count) {
            visit(step - kLookAhead, prepared);
        }
        if (step < count) {
            prepare(step, prepared);
        }
    }
}

}  // namespace dunmora
