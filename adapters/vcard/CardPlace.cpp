#include "adapters/vcard/CardPlace.h"

#include "platform/PlatformError.h"

#include <limits>

namespace dunmora {

namespace {

std::uint32_t in32Bits(std::size_t number)
{
    if (number > std::numeric_limits<std::uint32_t>::max()) {
        throw PlatformError("The address book is too large.");
    }
    return static_cast<std::uint32_t>(number);
}

}  // namespace

CardPlace::CardPlace(std::size_t fileNumber, const CardBytes& bytes)
    : file(in32Bits(fileNumber)),
      begin(in32Bits(bytes.range.begin)),
      size(in32Bits(bytes.range.end - bytes.range.begin)),
      lineEndSize(bytes.lineEndSize)
{
}

}  // namespace dunmora
