#pragma once

#include <functional>
#include <string>
#include <vector>

namespace dunmora {

/// An entry that the program adds to a menu.
struct MenuEntry {
    /// Plain UTF-8.
    std::string title;
    std::function<void()> run;
};

/// A submenu that the program extends while it runs.
///
/// Thread: the main thread. Errors: none.
class Menu {
public:
    virtual ~Menu() = default;

    /// Replaces the entries below those of the interface file. The menu may be open.
    virtual void setEntries(std::vector<MenuEntry> entries) = 0;

    /// Replaces the handler that is called before the menu around this one opens.
    virtual void setOpeningHandler(std::function<void()> handler) = 0;

    virtual void setEnabled(bool enabled) = 0;
};

}  // namespace dunmora
