#pragma once

#include "platform/InterfaceLoader.h"

#include <vector>

class QWidget;

namespace dunmora {

/// Returns the shortcuts of the commands in the window's menus, and then, in the order of Tab, the
/// keys that its widgets list for their users. Such a widget has two dynamic properties:
/// `keysTitle`, and `keys`, a list of texts such as "Home End: Go to the first or the last row". A
/// word before the colon that is no key's name in Qt's portable format is shown as it is.
///
/// Call it before the program changes the commands' titles. Thread: the main thread. Errors: none.
std::vector<Shortcut> shortcutsIn(const QWidget& window);

}  // namespace dunmora
