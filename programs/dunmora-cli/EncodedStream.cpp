#include "programs/dunmora-cli/EncodedStream.h"

#include <ostream>
#include <utility>

namespace dunmora {

EncodedStream::EncodedStream(std::ostream& target, Charset charset)
    : target_(target), charset_(std::move(charset))
{
}

EncodedStream::int_type EncodedStream::overflow(int_type c)
{
    if (traits_type::eq_int_type(c, traits_type::eof())) {
        return traits_type::not_eof(c);
    }
    const auto character = traits_type::to_char_type(c);
    return xsputn(&character, 1) == 1 ? c : traits_type::eof();
}

std::streamsize EncodedStream::xsputn(const char* text, std::streamsize size)
{
    target_ << charset_.encoded({text, static_cast<std::size_t>(size)});
    return target_ ? size : 0;
}

int EncodedStream::sync()
{
    return target_.flush() ? 0 : -1;
}

}  // namespace dunmora
