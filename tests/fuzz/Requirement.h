#pragma once

#include <cstdio>
#include <cstdlib>

namespace dunmora::test {

/// Ends the fuzz target with this message unless the condition holds, so that the fuzzer saves the
/// input.
inline void require(bool holds, const char* what)
{
    if (!holds) {
        static_cast<void>(std::fputs(what, stderr));
        static_cast<void>(std::fputc('\n', stderr));
        std::abort();
    }
}

}  // namespace dunmora::test
