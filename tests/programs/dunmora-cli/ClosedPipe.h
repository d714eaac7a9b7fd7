#pragma once

#include <cerrno>
#include <streambuf>

namespace dunmora::test {

/// A stream into a pipe whose reader has closed it.
class ClosedPipe final : public std::streambuf {
protected:
    int overflow(int /*c*/) override
    {
        errno = EPIPE;
        return traits_type::eof();
    }
};

}  // namespace dunmora::test
