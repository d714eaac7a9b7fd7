#pragma once

namespace dunmora {

/// Asks the processor for the memory at the address, so that it arrives while other work is done.
/// The address need not be readable.
inline void prefetch(const void* address)
{
    __builtin_prefetch(address);
    // GCC takes a function that does nothing else for one without an effect, and removes every call
    // of it.
    asm volatile("");
}

}  // namespace dunmora
