#pragma once

#include <memory>

namespace dunmora {

class ContactService;

/// The desktop's service for address books. What it is reached with is a module of the program's:
/// dozens of libraries come with it, and only this brings them into the process. It stays there.
/// Errors: PlatformError when the module, or a library that it needs, is not installed.
std::unique_ptr<ContactService> loadContactService();

/// Whether that module is installed; nothing is loaded. Errors: none.
bool hasContactModule();

}  // namespace dunmora
