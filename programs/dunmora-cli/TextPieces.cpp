#include "programs/dunmora-cli/TextPieces.h"

#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

/// As much as a pipe holds.
constexpr std::size_t kLong = 64UL * 1024;

}  // namespace

TextPieces::TextPieces(Print print) : print_(std::move(print)) {}

void TextPieces::printLong()
{
    if (text_.size() >= kLong) {
        printRest();
    }
}

void TextPieces::printRest()
{
    print_(text_);
    text_.clear();
}

}  // namespace dunmora
