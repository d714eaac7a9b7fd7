#include "ui/ShortcutsController.h"

#include "platform/DetailsView.h"

#include <string>
#include <vector>

namespace dunmora {

namespace {

DetailsLine headingOf(const std::string& group)
{
    DetailsLine line;
    line.title = group;
    line.accessibleText = group;
    line.isHeading = true;
    return line;
}

DetailsLine lineOf(const Shortcut& shortcut)
{
    DetailsLine line;
    line.title = shortcut.title;
    line.value = shortcut.keys;
    line.accessibleText = shortcut.title + ": " + shortcut.keys;
    return line;
}

std::vector<DetailsLine> linesOf(const std::vector<Shortcut>& shortcuts)
{
    std::vector<DetailsLine> lines;
    const std::string* group = nullptr;
    for (const auto& shortcut : shortcuts) {
        if (group == nullptr || *group != shortcut.group) {
            group = &shortcut.group;
            lines.push_back(headingOf(*group));
        }
        lines.push_back(lineOf(shortcut));
    }
    return lines;
}

}  // namespace

ShortcutsController::ShortcutsController(const Interface& mainInterface)
    : WindowController("ShortcutsWindow"), mainInterface_(mainInterface)
{
}

void ShortcutsController::windowDidLoad(Interface& interface)
{
    interface.command("OnClose").setHandler([this](View* /*sender*/) { close(); });
    interface.detailsView("lstShortcuts").setLines(linesOf(mainInterface_.shortcuts()));
}

}  // namespace dunmora
