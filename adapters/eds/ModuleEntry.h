#pragma once

namespace dunmora {

class ContactService;

/// The file of the plug-in for the desktop's address books.
inline constexpr auto kEdsModuleFile = "dunmora-eds.so";

/// The plug-in's one function and its name. It creates a service, which the caller owns.
using MakeContactService = ContactService*();
inline constexpr auto kEdsModuleEntry = "dunmoraMakeContactService";

}  // namespace dunmora
