#pragma once

#include "platform/Application.h"
#include "platform/Connection.h"
#include "platform/Desktop.h"
#include "platform/InterfaceLoader.h"
#include "platform/OpenPanel.h"
#include "platform/ProgressIndicator.h"
#include "platform/TextField.h"
#include "platform/Window.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace dunmora::test {

/// A bar that takes its values and costs nothing else.
class QuietProgressIndicator final : public ProgressIndicator {
public:
    void setHidden(bool /*hidden*/) override {}
    void setNeedsDisplay() override { ++redrawsAsked; }
    void setMinValue(double value) override { minValue = value; }
    void setMaxValue(double value) override { maxValue = value; }
    void setDoubleValue(double value) override { doubleValue = value; }
    void startAnimation() override {}

    double minValue = 0;
    double maxValue = 0;
    double doubleValue = 0;
    std::size_t redrawsAsked = 0;
};

class QuietTextField final : public TextField {
public:
    void setHidden(bool /*hidden*/) override {}
    void setNeedsDisplay() override {}
    void setStringValue(std::string_view text) override { stringValue = text; }

    std::string stringValue;
};

class QuietWindow final : public Window {
public:
    void setTitle(const std::string& /*title*/) override {}
    void setLevel(WindowLevel /*level*/) override {}
    void setDelegate(WindowDelegate* /*delegate*/) override {}
    void show() override {}
    void close() override {}
};

/// An interface with a bar, a line of text and nothing else, which writes nothing down: what it
/// takes part in can be measured.
class QuietInterface final : public Interface {
public:
    explicit QuietInterface(QuietProgressIndicator& bar) : bar_(bar) {}

    Window& window() override { return window_; }
    TextField& textField(std::string_view /*outlet*/) override { return text_; }
    ProgressIndicator& progressIndicator(std::string_view /*outlet*/) override { return bar_; }
    View& view(std::string_view outlet) override { missing(outlet); }
    Button& button(std::string_view outlet) override { missing(outlet); }
    CheckBox& checkBox(std::string_view outlet) override { missing(outlet); }
    TableView& tableView(std::string_view outlet) override { missing(outlet); }
    Command& command(std::string_view name) override { missing(name); }

private:
    [[noreturn]] static void missing(std::string_view name)
    {
        throw std::logic_error("no " + std::string(name));
    }

    QuietProgressIndicator& bar_;
    QuietWindow window_;
    QuietTextField text_;
};

/// Makes quiet interfaces, which share one bar.
class QuietInterfaceLoader final : public InterfaceLoader {
public:
    std::unique_ptr<Interface> load(std::string_view /*name*/) override
    {
        return std::make_unique<QuietInterface>(bar);
    }

    QuietProgressIndicator bar;
};

/// An application with one thread and no sessions.
class QuietApplication final : public Application {
public:
    void terminate(const void* /*sender*/) override {}
    int runModalForWindow(Window& /*window*/) override { return kRunAborted; }
    void abortModal() override {}
    void detachNewThread(std::string_view /*name*/, std::function<void()> body) override { body(); }
    void performOnMainThread(const std::function<void()>& work) override { work(); }
};

class QuietOpenPanel final : public OpenPanel {
public:
    std::optional<std::filesystem::path> runModal() override { return std::nullopt; }
};

class QuietConnectionOpener final : public ConnectionOpener {
public:
    std::shared_ptr<Connection> openConnection(const std::string& /*url*/,
                                               ConnectionDelegate& /*delegate*/) override
    {
        return nullptr;
    }
};

/// The ports of a measurement, installed as the desktop as long as it lives.
struct QuietDesktop {
    QuietDesktop() { Desktop::install(desktop); }
    ~QuietDesktop() = default;
    QuietDesktop(const QuietDesktop&) = delete;
    QuietDesktop& operator=(const QuietDesktop&) = delete;

    QuietApplication application;
    QuietInterfaceLoader interfaceLoader;
    QuietOpenPanel openPanel;
    QuietConnectionOpener connectionOpener;
    Desktop desktop{application, interfaceLoader, openPanel, connectionOpener};
};

}  // namespace dunmora::test
