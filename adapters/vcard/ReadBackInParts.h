#pragma once

#include "adapters/posix/Pieces.h"
#include "adapters/vcard/RemainingCard.h"

#include <cstddef>
#include <vector>

namespace dunmora {

class PreparedFile;

/// How a file is read back; the result is the same.
struct ReadBackMethod {
    /// About how many bytes are read at a time, at least 1.
    std::size_t partSize;
    /// The most threads; 0 means one for each processor.
    std::size_t threads;
};

/// Parts that stay in the processor's cache.
inline constexpr ReadBackMethod kUsualReadBack{std::size_t{1} << 18U, 0};

/// Reads a new file back part by part, several at the same time, so that a large one is never in
/// memory as a whole. Returns true when the file certainly is what has been written, and would hold
/// exactly these cards and people, in this order, if it were read from its beginning to its end.
/// Returns false when it is not, or when reading parts cannot decide that.
///
/// A part begins with the BEGIN line of an expected card, and counts only if the part before it has
/// ended between cards. The cards in one must be those expected there.
///
/// The bytes of the cards are those in `written`, at the same address.
/// Thread: one; uses others meanwhile. Errors: PlatformError when the file cannot be read.
bool isReadBackInParts(const PreparedFile& file, const Pieces& written,
                       const std::vector<RemainingCard>& expected,
                       const ReadBackMethod& method = kUsualReadBack);

}  // namespace dunmora
