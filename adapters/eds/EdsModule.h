#pragma once

#include <filesystem>
#include <memory>

namespace dunmora {

class ContactService;

/// Connects to the desktop's service for address books. Loads the plug-in for it, with the dozens
/// of libraries that it needs; they stay loaded until the process ends. Errors: PlatformError when
/// the plug-in or one of its libraries is not installed, or when `checkModule` refuses the plug-in.
std::unique_ptr<ContactService> loadContactService();

/// The only file that the program with this path loads as the plug-in: in libdir/dunmora/ of the
/// installation that the program belongs to, wherever that is now, or of the build folder, which
/// has the same layout. Empty unless the program's path is absolute. Errors: none.
std::filesystem::path moduleOf(const std::filesystem::path& program);

/// Throws a PlatformError unless this plug-in can be trusted as much as this program: it is a file,
/// not a link, it and its folder belong to root or to the program's owner, and nobody else may
/// write to them. A group may only if it may also write to the program, as in a build with umask
/// 002.
void checkModule(const std::filesystem::path& module, const std::filesystem::path& program);

/// Whether that plug-in is installed. Loads nothing. Errors: none.
bool hasContactModule();

}  // namespace dunmora
