#pragma once

#include <string>
#include <string_view>

namespace dunmora {

/// How characters from DEL on are written in a JSON text: as UTF-8, or escaped so that a terminal
/// sees printable ASCII only.
enum class JsonCharacters { Utf8, Ascii };

/// Appends the text as a JSON string (RFC 8259), quotes included. Bytes that are not UTF-8 become
/// U+FFFD.
void appendJsonText(std::string& out, std::string_view text, JsonCharacters characters);

}  // namespace dunmora
