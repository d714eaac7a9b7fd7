#pragma once

#include <QImage>

#include <string_view>

namespace dunmora {

/// Decodes an image file of an address book, scaled down to the size of a thumbnail. Returns a null
/// image when it cannot be decoded, is of an unusual format, or is so big that decoding it would
/// stall the program.
QImage decodedPicture(std::string_view bytes);

}  // namespace dunmora
