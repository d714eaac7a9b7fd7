#pragma once

#include <memory>

namespace dunmora {

class ContactService;

/// Connects to the desktop's service for address books. Loads the plug-in for it, with the dozens
/// of libraries that it needs; they stay loaded until the process ends. Errors: PlatformError when
/// the plug-in or one of its libraries is not installed.
std::unique_ptr<ContactService> loadContactService();

/// Whether that plug-in is installed. Loads nothing. Errors: none.
bool hasContactModule();

}  // namespace dunmora
