#pragma once

#include <span>
#include <string>

namespace dunmora {

class ContactsParser;

/// Sets and removes check marks on top of those that the engine proposed.
/// Errors: CommandError (wrong use), before any mark has changed, for a uid that nobody has or that
/// is in both lists.
void applyMarks(ContactsParser& engine, std::span<const std::string> check,
                std::span<const std::string> uncheck);

}  // namespace dunmora
