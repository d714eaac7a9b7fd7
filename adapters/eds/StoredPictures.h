#pragma once

#include "adapters/eds/ContactService.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace dunmora {

// The service moves the pictures of a local book's people to files of its own, and their cards hold
// only the addresses of these files. It deletes the files together with the people.

/// The folder in which the service keeps its files.
std::filesystem::path pictureFolder();

/// Returns the card with the stored pictures in it (RFC 2426 §3.1.4), in place of their addresses.
/// A picture that cannot be read keeps its address. Reads no file outside the folder of pictures: a
/// card can contain any address.
/// Thread: any; blocks on the disk. Errors: none.
std::string withPictures(std::string_view card, const std::filesystem::path& folder);

/// The same for a card of this book; only local books have stored pictures.
std::string wholeCard(const ServiceBook& book, std::string_view card,
                      const std::filesystem::path& folder);

/// Whether `wholeCard` may return another text than the card. Reads no file.
bool mayHavePictures(const ServiceBook& book, std::string_view card,
                     const std::filesystem::path& folder);

/// A card without the pictures whose files are gone. The service adds no card that has them.
struct CardWithoutLostPictures {
    std::string card;
    std::size_t lost = 0;
};
CardWithoutLostPictures withoutLostPictures(std::string_view card,
                                            const std::filesystem::path& folder);

}  // namespace dunmora
