#pragma once

#include <string_view>

namespace dunmora {

/// The program's standard user defaults: those of its bundle, or of its name where it has none.
/// A key that is not UTF-8 has no value and takes none.
/// Thread: any, several at once, within an autorelease pool. Errors: exceptions of Objective-C.

bool hasStandardDefault(std::string_view key);
bool boolOfStandardDefault(std::string_view key);
void setStandardDefault(std::string_view key, bool value);
/// Returns whether all that was set is stored.
bool synchronizeStandardDefaults();

}  // namespace dunmora
