#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace dunmora {

/// The program's standard user defaults: those of its bundle, or else of its name. A key that is
/// not UTF-8 has no value and cannot be set. Thread: any, concurrently, within an autorelease pool.
/// Errors: Objective-C exceptions.

bool hasStandardDefault(std::string_view key);
bool boolOfStandardDefault(std::string_view key);
void setStandardDefault(std::string_view key, bool value);

using StandardTexts = std::map<std::string, std::string, std::less<>>;
/// The texts by key that the value consists of; none for a value of another kind.
StandardTexts textsOfStandardDefault(std::string_view key);
void setStandardDefault(std::string_view key, const StandardTexts& texts);

/// Stores all values that were set. Returns whether that succeeded.
bool synchronizeStandardDefaults();

}  // namespace dunmora
