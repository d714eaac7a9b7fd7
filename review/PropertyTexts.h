#pragma once

#include <string>
#include <string_view>

namespace dunmora {

struct CardProperty;

// What a card's properties are called, and how their values are written, for the user. Texts of the
// address book are not safe to display yet. Thread: any. Errors: none.

/// The word for a property inside a sentence: "e-mail". The name itself when there is no word.
std::string propertyWord(std::string_view name);

/// What the property is called at the beginning of a line: "E-mail (work)".
std::string propertyTitle(const CardProperty& property);

/// The value: "Ann Lee", "1 Main St, Springfield"; for a binary one its type and size:
/// "image/jpeg, 12 KB".
std::string propertyValue(const CardProperty& property);

/// Whether a person may have several such properties at the same time, such as numbers.
bool isOneOfSeveral(std::string_view name);

}  // namespace dunmora
