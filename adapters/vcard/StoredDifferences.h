#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// Compares cards without reading their values. Replaces `names` by the names, in upper case and
/// each once, of the properties in which the cards differ: those of any other name are the same in
/// each of the cards, whatever their order and however often a card repeats one. Returns false when
/// this is not certain, when a card has no name that shows something, and for cards with very many
/// properties or differences, which would take longer than to read them.
///
/// Each is a card that `CardReader` finds, all in text of the same kind, with or without its last
/// line end. Thread: any. Errors: none.
bool findStoredDifferences(std::span<const std::string_view> cards,
                           std::vector<std::string>& names);

}  // namespace dunmora
