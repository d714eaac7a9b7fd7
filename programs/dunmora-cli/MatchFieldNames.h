#pragma once

#include "base/ContactFields.h"

#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// The names of all match fields as the user writes them: "firstname,lastname,…".
std::string matchFieldList();

/// The fields of a comma-separated list such as "firstname,lastname"; spaces around a name are
/// ignored. A blank list chooses no field.
/// Errors: CommandError (wrong use) for an unknown or empty name.
MatchFieldChoice parseMatchFields(std::string_view list);

/// The names of the fields that are on, in the order of their values in a match key.
std::vector<std::string_view> namesOf(const MatchFieldChoice& choice);

/// Returns whether any field is on; shows a message when none is.
bool insistOnMatchField(const MatchFieldChoice& choice);

}  // namespace dunmora
