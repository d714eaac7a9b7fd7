#pragma once

#include "adapters/vcard/CardReader.h"
#include "platform/PersonCard.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// Reads all properties of a card, the first complete one of the text, whether it is a person's or
/// a list's. Nothing when there is none.
///
/// The card is read by the rules of `CardReader`: both find the same cards and decode a value
/// alike. The card of an AGENT is the text of that property. A base64 value or a data: URI (RFC
/// 2397) that is not text becomes binary; every other URI is text.
///
/// Thread: any. Errors: none.
std::optional<std::vector<CardProperty>> readProperties(std::string_view text,
                                                        CardReader::Text kind);

/// Those of these properties that have one of the names, which are in upper case and ASCII. The
/// others cost little.
std::optional<std::vector<CardProperty>> readPropertiesNamed(std::span<const std::string> names,
                                                             std::string_view text,
                                                             CardReader::Text kind);

}  // namespace dunmora
