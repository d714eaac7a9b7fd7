#pragma once

#include "programs/dunmora-cli/Charset.h"

#include <iosfwd>
#include <streambuf>

namespace dunmora {

/// Writes UTF-8 texts to another stream in a charset. A text that is written at once must not end
/// within a character.
/// Thread: one at a time. Errors: those of the other stream.
class EncodedStream final : public std::streambuf {
public:
    /// `target` must stay alive.
    EncodedStream(std::ostream& target, Charset charset);

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

private:
    std::ostream& target_;
    Charset charset_;
};

}  // namespace dunmora
