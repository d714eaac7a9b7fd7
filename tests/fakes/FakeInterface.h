#pragma once

#include "platform/InterfaceLoader.h"
#include "platform/Menu.h"
#include "platform/Window.h"
#include "tests/fakes/CallLog.h"
#include "tests/fakes/FakeControls.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

class FakeCommand final : public Command {
public:
    void setHandler(Handler newHandler) override;
    void setEnabled(bool enabled) override;
    void setHidden(bool hidden) override;
    void setTitle(const std::string& text) override;
    void setChecked(bool checked) override;

    /// Does what the user's click does: nothing while the command is disabled or hidden.
    void use(View* sender = nullptr) const;

    Handler handler;
    bool isEnabled = true;
    bool isHidden = false;
    /// Empty while it has the title of its interface file.
    std::string title;
    bool isChecked = false;
};

class FakeMenu final : public Menu {
public:
    void setEntries(std::vector<MenuEntry> newEntries) override;
    void setOpeningHandler(std::function<void()> handler) override;
    void setEnabled(bool enabled) override;

    /// Does what the user does who opens the menu around this one.
    void open() const;
    /// Chooses the entry at this index of an enabled menu.
    void choose(std::size_t entry) const;
    std::vector<std::string> titles() const;

    std::vector<MenuEntry> entries;
    std::function<void()> opening;
    bool isEnabled = true;
};

/// A window that logs each call as "Interface call value".
class FakeWindow final : public Window {
public:
    FakeWindow(std::string name, CallLog& log);

    void setTitle(const std::string& text) override;
    void setLevel(WindowLevel newLevel) override;
    void setDelegate(WindowDelegate* newDelegate) override;
    using Window::show;
    void show(KeyboardFocus newFocus) override;
    void close() override;

    std::string title;
    WindowLevel level = WindowLevel::Normal;
    WindowDelegate* delegate = nullptr;
    bool isVisible = false;
    /// As the last call of `show` asked for.
    KeyboardFocus focus = KeyboardFocus::Leave;

private:
    std::string name_;
    CallLog& log_;
};

/// An interface that has every outlet and command it is asked for, each created on first use.
class FakeInterface final : public Interface {
public:
    FakeInterface(const std::string& name, CallLog& log);
    ~FakeInterface() override;
    FakeInterface(const FakeInterface&) = delete;
    FakeInterface& operator=(const FakeInterface&) = delete;

    FakeWindow& window() override;
    FakeView& view(std::string_view outlet) override;
    FakeButton& button(std::string_view outlet) override;
    FakeCheckBox& checkBox(std::string_view outlet) override;
    FakeTextField& textField(std::string_view outlet) override;
    FakeProgressIndicator& progressIndicator(std::string_view outlet) override;
    FakeTableView& tableView(std::string_view outlet) override;
    FakeDetailsView& detailsView(std::string_view outlet) override;
    FakeMenu& menu(std::string_view outlet) override;
    FakeCommand& command(std::string_view name) override;
    std::vector<Shortcut> shortcuts() const override;

    FakeWindow fakeWindow;
    std::vector<Shortcut> fakeShortcuts;

private:
    template <typename Control>
    using Outlets = std::map<std::string, std::unique_ptr<Control>, std::less<>>;

    template <typename Control>
    Control& outletIn(Outlets<Control>& outlets, std::string_view outlet);

    std::string name_;
    CallLog& log_;
    Outlets<FakeView> views_;
    Outlets<FakeButton> buttons_;
    Outlets<FakeCheckBox> checkBoxes_;
    Outlets<FakeTextField> textFields_;
    Outlets<FakeProgressIndicator> progressIndicators_;
    Outlets<FakeTableView> tableViews_;
    Outlets<FakeDetailsView> detailsViews_;
    std::map<std::string, FakeMenu> menus_;
    std::map<std::string, FakeCommand> commands_;
};

/// Loads fakes, except for the names in `missing`. All interfaces share one log.
class FakeInterfaceLoader final : public InterfaceLoader {
public:
    FakeInterfaceLoader();
    ~FakeInterfaceLoader() override;
    FakeInterfaceLoader(const FakeInterfaceLoader&) = delete;
    FakeInterfaceLoader& operator=(const FakeInterfaceLoader&) = delete;

    std::unique_ptr<Interface> load(std::string_view name) override;

    CallLog log;
    /// Interfaces that cannot be loaded.
    std::set<std::string, std::less<>> missing;
    /// The interface loaded last; dangles once its owner has destroyed it.
    FakeInterface* last = nullptr;
    /// Called with each interface before its owner gets it.
    std::function<void(FakeInterface& interface)> onLoad = [](FakeInterface& /*interface*/) {};
};

}  // namespace dunmora::test
