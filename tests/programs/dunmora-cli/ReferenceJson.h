#pragma once

#include "programs/dunmora-cli/JsonText.h"

#include <string>

namespace dunmora::test {

// JSON as a well-known library reads and writes it. Its header takes seconds to compile, so only
// one source includes it.

/// The value that a JSON Pointer (RFC 6901) finds in a JSON text, written without blanks; the whole
/// text without a pointer. Throws when the text is not JSON or has no such value.
std::string jsonAt(const std::string& json, const std::string& pointer = "");

/// The text as a JSON string.
std::string referenceJsonText(const std::string& text, JsonCharacters characters);

}  // namespace dunmora::test
