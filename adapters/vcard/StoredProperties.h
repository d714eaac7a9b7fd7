#pragma once

#include <string_view>
#include <vector>

namespace dunmora {

/// A property of a card as its book stores it. The texts are views into the card.
struct StoredProperty {
    /// Without the group, in the case that the card has.
    std::string_view name;
    /// All its lines, without the last line end.
    std::string_view text;
};

/// Splits a card into its properties, in their order, without reading their values. Returns false
/// for a card of which it is not certain that `CardReader` splits it alike, such as one with
/// another card inside.
///
/// How a property is read depends on its text, on the first VERSION of the card, on the X-ABLABEL
/// of its group, and on nothing else in the card.
///
/// `card` is a card that `CardReader` finds, with or without its last line end.
/// Thread: any. Errors: none.
bool splitStored(std::string_view card, std::vector<StoredProperty>& properties);

/// Whether the line, which is a whole property, is surely a name (N or FN) of which a reader sees
/// something. Thread: any. Errors: none.
bool showsName(std::string_view line);

}  // namespace dunmora
