#include "text/TextHash.h"

#include <random>

namespace dunmora {

SipKey randomSipKey()
{
    std::random_device device;
    const auto number = [&] {
        const std::uint64_t high = device();
        return high << 32U | device();
    };
    const auto first = number();
    return {first, number()};
}

std::uint64_t textHash(std::string_view text)
{
    static const auto key = randomSipKey();
    // 1-3 as in the hash tables of Rust and Python: hashes are never shown to anybody, so the
    // margin of 2-4, at almost twice the cost, would protect nothing more.
    return sipHash<1, 3>(key, text);
}

}  // namespace dunmora
