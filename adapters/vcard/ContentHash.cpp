#include "adapters/vcard/ContentHash.h"

#include <xxhash.h>

#include <memory>
#include <new>

namespace dunmora {

ContentHash contentHash(const Pieces& content)
{
    const auto destroy = [](XXH3_state_t* state) { XXH3_freeState(state); };
    const std::unique_ptr<XXH3_state_t, decltype(destroy)> state(XXH3_createState(), destroy);
    if (!state) {
        throw std::bad_alloc();
    }
    XXH3_128bits_reset(state.get());
    for (const auto piece : content) {
        XXH3_128bits_update(state.get(), piece.data(), piece.size());
    }
    const auto hash = XXH3_128bits_digest(state.get());
    return {sizeOf(content), hash.high64, hash.low64};
}

}  // namespace dunmora
