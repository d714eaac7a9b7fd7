#pragma once

namespace dunmora {

class ContactService;

/// The file of the module that reaches the desktop's address books.
inline constexpr auto kEdsModuleFile = "dunmora-eds.so";

/// The module's one function, which gives the caller a service of their own, and its name.
using MakeContactService = ContactService*();
inline constexpr auto kEdsModuleEntry = "dunmoraMakeContactService";

}  // namespace dunmora
