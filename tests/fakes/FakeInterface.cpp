#include "tests/fakes/FakeInterface.h"

#include <utility>

namespace dunmora::test {

void FakeCommand::setHandler(Handler newHandler)
{
    handler = std::move(newHandler);
}

void FakeCommand::setEnabled(bool enabled)
{
    isEnabled = enabled;
}

void FakeCommand::setHidden(bool hidden)
{
    isHidden = hidden;
}

void FakeCommand::setTitle(const std::string& text)
{
    title = text;
}

void FakeCommand::setChecked(bool checked)
{
    isChecked = checked;
}

void FakeCommand::use(View* sender) const
{
    if (isEnabled && !isHidden && handler) {
        handler(sender);
    }
}

void FakeMenu::setEntries(std::vector<MenuEntry> newEntries)
{
    entries = std::move(newEntries);
}

void FakeMenu::setOpeningHandler(std::function<void()> handler)
{
    opening = std::move(handler);
}

void FakeMenu::setEnabled(bool enabled)
{
    isEnabled = enabled;
}

void FakeMenu::open() const
{
    if (opening) {
        opening();
    }
}

void FakeMenu::choose(std::size_t entry) const
{
    if (isEnabled) {
        // A copy: the handler may replace the entries.
        const auto run = entries.at(entry).run;
        run();
    }
}

std::vector<std::string> FakeMenu::titles() const
{
    std::vector<std::string> titles;
    for (const auto& entry : entries) {
        titles.push_back(entry.title);
    }
    return titles;
}

FakeWindow::FakeWindow(std::string name, CallLog& log) : name_(std::move(name)), log_(log) {}

void FakeWindow::setTitle(const std::string& text)
{
    title = text;
}

void FakeWindow::setLevel(WindowLevel newLevel)
{
    level = newLevel;
    log_.add(name_ + " setLevel " +
             (newLevel == WindowLevel::Status     ? "status"
              : newLevel == WindowLevel::Floating ? "floating"
                                                  : "normal"));
}

void FakeWindow::setDelegate(WindowDelegate* newDelegate)
{
    delegate = newDelegate;
}

void FakeWindow::show(KeyboardFocus newFocus)
{
    isVisible = true;
    focus = newFocus;
    log_.add(name_ + " show");
}

void FakeWindow::close()
{
    log_.add(name_ + " close");
    isVisible = false;
    if (delegate != nullptr) {
        delegate->windowWillClose();
    }
}

FakeInterface::FakeInterface(const std::string& name, CallLog& log)
    : fakeWindow(name, log), name_(name), log_(log)
{
}

FakeInterface::~FakeInterface() = default;

template <typename Control>
Control& FakeInterface::outletIn(Outlets<Control>& outlets, std::string_view outlet)
{
    auto& control = outlets[std::string(outlet)];
    if (!control) {
        control = std::make_unique<Control>(name_ + "." + std::string(outlet), log_);
    }
    return *control;
}

FakeWindow& FakeInterface::window()
{
    return fakeWindow;
}

FakeView& FakeInterface::view(std::string_view outlet)
{
    return outletIn(views_, outlet);
}

FakeButton& FakeInterface::button(std::string_view outlet)
{
    return outletIn(buttons_, outlet);
}

FakeCheckBox& FakeInterface::checkBox(std::string_view outlet)
{
    return outletIn(checkBoxes_, outlet);
}

FakeTextField& FakeInterface::textField(std::string_view outlet)
{
    return outletIn(textFields_, outlet);
}

FakeProgressIndicator& FakeInterface::progressIndicator(std::string_view outlet)
{
    return outletIn(progressIndicators_, outlet);
}

FakeTableView& FakeInterface::tableView(std::string_view outlet)
{
    return outletIn(tableViews_, outlet);
}

FakeDetailsView& FakeInterface::detailsView(std::string_view outlet)
{
    return outletIn(detailsViews_, outlet);
}

FakeMenu& FakeInterface::menu(std::string_view outlet)
{
    return menus_[std::string(outlet)];
}

FakeCommand& FakeInterface::command(std::string_view name)
{
    return commands_[std::string(name)];
}

std::vector<Shortcut> FakeInterface::shortcuts() const
{
    return fakeShortcuts;
}

FakeInterfaceLoader::FakeInterfaceLoader() = default;
FakeInterfaceLoader::~FakeInterfaceLoader() = default;

std::unique_ptr<Interface> FakeInterfaceLoader::load(std::string_view name)
{
    log.add("load " + std::string(name));
    if (missing.contains(name)) {
        return nullptr;
    }
    auto interface = std::make_unique<FakeInterface>(std::string(name), log);
    last = interface.get();
    onLoad(*interface);
    return interface;
}

}  // namespace dunmora::test
