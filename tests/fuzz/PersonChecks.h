#pragma once

#include "platform/Person.h"

#include <string_view>

namespace dunmora::test {

/// Whether the text is UTF-8 (RFC 3629 §4). Written independently of text/Utf8, whose results it
/// checks.
bool isUtf8Text(std::string_view text);

bool hasOnlyUtf8(const Person& person);

/// Whether the people are equal apart from their ids, which depend on the other cards of a book.
bool haveSameFields(const Person& a, const Person& b);

}  // namespace dunmora::test
