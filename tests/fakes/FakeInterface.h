#pragma once

#include "platform/Button.h"
#include "platform/CheckBox.h"
#include "platform/InterfaceLoader.h"
#include "platform/ProgressIndicator.h"
#include "platform/TableView.h"
#include "platform/TextField.h"
#include "platform/Window.h"
#include "tests/fakes/CallLog.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {

/// A control that keeps what it was told and writes it down as "Interface.outlet call value".
template <typename Port>
class FakeControl : public Port {
public:
    FakeControl(std::string name, CallLog& log) : name_(std::move(name)), log_(log) {}

    void setHidden(bool hidden) override
    {
        isHidden = hidden;
        onSetHidden(hidden);
    }
    void setNeedsDisplay() override { note("setNeedsDisplay"); }

    bool isHidden = false;
    /// Called with what the control was told; such calls are not written down otherwise.
    std::function<void(bool hidden)> onSetHidden = [](bool /*hidden*/) {};

protected:
    void note(const std::string& call) { log_.add(name_ + " " + call); }

private:
    std::string name_;
    CallLog& log_;
};

class FakeView final : public FakeControl<View> {
public:
    using FakeControl::FakeControl;
};

class FakeButton final : public FakeControl<Button> {
public:
    using FakeControl::FakeControl;

    void setTitle(const std::string& text) override { title = text; }

    std::string title;
};

class FakeCheckBox final : public FakeControl<CheckBox> {
public:
    using FakeControl::FakeControl;

    CheckState state() const override { return shown; }
    void setState(CheckState state) override
    {
        shown = state;
        note("setState " + std::to_string(static_cast<int>(state)));
    }

    CheckState shown = CheckState::Mixed;
};

class FakeTextField final : public FakeControl<TextField> {
public:
    using FakeControl::FakeControl;

    void setStringValue(std::string_view text) override
    {
        stringValue = text;
        note("setStringValue " + stringValue);
    }

    std::string stringValue;
};

class FakeProgressIndicator final : public FakeControl<ProgressIndicator> {
public:
    using FakeControl::FakeControl;

    void setMinValue(double value) override { note("setMinValue " + std::to_string(value)); }
    void setMaxValue(double value) override { note("setMaxValue " + std::to_string(value)); }
    void setDoubleValue(double value) override { note("setDoubleValue " + std::to_string(value)); }
    void startAnimation() override { note("startAnimation"); }
};

/// A table that draws nothing; a test asks for rows and edits them itself.
class FakeTableView final : public FakeControl<TableView> {
public:
    using FakeControl::FakeControl;

    void setDataSource(TableViewDataSource* source, TableViewDelegate* rowDelegate) override
    {
        dataSource = source;
        delegate = rowDelegate;
    }
    void setEnabled(bool enabled) override
    {
        isEnabled = enabled;
        note(enabled ? "setEnabled true" : "setEnabled false");
    }
    void reloadData() override
    {
        rows = dataSource == nullptr ? 0 : dataSource->numberOfRows();
        note("reloadData");
    }
    std::optional<std::size_t> selectedRow() const override { return selected; }
    void selectRow(std::size_t row) override
    {
        selected = row;
        note("selectRow " + std::to_string(row));
    }
    void editSelectedRows(std::string_view column, CheckState state) override
    {
        note("editSelectedRows " + std::string(column) + " " +
             std::to_string(static_cast<int>(state)));
    }
    void beginFiltering() override { note("beginFiltering"); }
    void endFiltering() override { note("endFiltering"); }

    TableViewDataSource* dataSource = nullptr;
    TableViewDelegate* delegate = nullptr;
    bool isEnabled = true;
    /// As many as the data source had when the table was last reloaded.
    std::size_t rows = 0;
    std::optional<std::size_t> selected;
};

class FakeCommand final : public Command {
public:
    void setHandler(Handler newHandler) override { handler = std::move(newHandler); }
    void setEnabled(bool enabled) override { isEnabled = enabled; }

    /// What the user's click does: nothing while the command is disabled.
    void use(View* sender = nullptr) const
    {
        if (isEnabled && handler) {
            handler(sender);
        }
    }

    Handler handler;
    bool isEnabled = true;
};

/// A window that writes down what is done to it as "Interface call value".
class FakeWindow final : public Window {
public:
    FakeWindow(std::string name, CallLog& log) : name_(std::move(name)), log_(log) {}

    void setTitle(const std::string& text) override { title = text; }
    void setLevel(WindowLevel newLevel) override
    {
        level = newLevel;
        log_.add(name_ + " setLevel " +
                 (newLevel == WindowLevel::Status     ? "status"
                  : newLevel == WindowLevel::Floating ? "floating"
                                                      : "normal"));
    }
    void setDelegate(WindowDelegate* newDelegate) override { delegate = newDelegate; }
    void show() override
    {
        isVisible = true;
        log_.add(name_ + " show");
    }
    void close() override
    {
        log_.add(name_ + " close");
        isVisible = false;
        if (delegate != nullptr) {
            delegate->windowWillClose();
        }
    }

    std::string title;
    WindowLevel level = WindowLevel::Normal;
    WindowDelegate* delegate = nullptr;
    bool isVisible = false;

private:
    std::string name_;
    CallLog& log_;
};

/// An interface that has every outlet and command it is asked for, each made on first use.
class FakeInterface final : public Interface {
public:
    FakeInterface(const std::string& name, CallLog& log)
        : fakeWindow(name, log), name_(name), log_(log)
    {
    }

    FakeWindow& window() override { return fakeWindow; }
    FakeView& view(std::string_view outlet) override { return outletIn(views_, outlet); }
    FakeButton& button(std::string_view outlet) override { return outletIn(buttons_, outlet); }
    FakeCheckBox& checkBox(std::string_view outlet) override
    {
        return outletIn(checkBoxes_, outlet);
    }
    FakeTextField& textField(std::string_view outlet) override
    {
        return outletIn(textFields_, outlet);
    }
    FakeProgressIndicator& progressIndicator(std::string_view outlet) override
    {
        return outletIn(progressIndicators_, outlet);
    }
    FakeTableView& tableView(std::string_view outlet) override
    {
        return outletIn(tableViews_, outlet);
    }
    FakeCommand& command(std::string_view name) override { return commands_[std::string(name)]; }

    FakeWindow fakeWindow;

private:
    template <typename Control>
    using Outlets = std::map<std::string, std::unique_ptr<Control>, std::less<>>;

    template <typename Control>
    Control& outletIn(Outlets<Control>& outlets, std::string_view outlet)
    {
        auto& control = outlets[std::string(outlet)];
        if (!control) {
            control = std::make_unique<Control>(name_ + "." + std::string(outlet), log_);
        }
        return *control;
    }

    std::string name_;
    CallLog& log_;
    Outlets<FakeView> views_;
    Outlets<FakeButton> buttons_;
    Outlets<FakeCheckBox> checkBoxes_;
    Outlets<FakeTextField> textFields_;
    Outlets<FakeProgressIndicator> progressIndicators_;
    Outlets<FakeTableView> tableViews_;
    std::map<std::string, FakeCommand> commands_;
};

/// Loads fakes, but for the names that a test takes away. Every interface writes into one log.
class FakeInterfaceLoader final : public InterfaceLoader {
public:
    std::unique_ptr<Interface> load(std::string_view name) override
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

    CallLog log;
    /// Interfaces that cannot be loaded.
    std::set<std::string, std::less<>> missing;
    /// The one loaded last; gone with its owner.
    FakeInterface* last = nullptr;
    /// Called with each interface before its owner gets it.
    std::function<void(FakeInterface& interface)> onLoad = [](FakeInterface& /*interface*/) {};
};

}  // namespace dunmora::test
