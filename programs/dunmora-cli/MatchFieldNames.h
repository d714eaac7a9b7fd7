#pragma once

#include "engine/MatchFields.h"

#include <bitset>
#include <string_view>
#include <vector>

namespace dunmora {

/// Which match fields are on; a bit's position is the field's in `kMatchFields`.
using MatchFieldChoice = std::bitset<kMatchFields.size()>;

/// The fields of a comma-separated list such as "firstname,lastname"; blanks around a name do not
/// count. A list of nothing but blanks chooses none.
/// Errors: CommandError (wrong use) for a name that is no field's, an empty one included.
MatchFieldChoice parseMatchFields(std::string_view list);

/// The names of the fields that are on, in the order of `kMatchFields`.
std::vector<std::string_view> namesOf(const MatchFieldChoice& choice);

/// What the preferences choose now.
MatchFieldChoice chosenMatchFields();

/// Stores all six flags in the preferences.
void storeMatchFields(const MatchFieldChoice& choice);

/// Whether any field is on; tells the user when none is.
bool insistOnMatchField(const MatchFieldChoice& choice);

}  // namespace dunmora
