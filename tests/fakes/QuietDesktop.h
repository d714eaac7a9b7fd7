#pragma once

#include "platform/Application.h"
#include "platform/Connection.h"
#include "platform/Desktop.h"
#include "platform/InterfaceLoader.h"
#include "platform/OpenPanel.h"
#include "platform/ProgressIndicator.h"
#include "platform/SavePanel.h"
#include "tests/fakes/FakeNumberFormat.h"
#include "tests/fakes/FakeTextFolding.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace dunmora::test {

/// A bar that keeps its values and does nothing else.
class QuietProgressIndicator final : public ProgressIndicator {
public:
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override;
    void setMinValue(double value) override;
    void setMaxValue(double value) override;
    void setDoubleValue(double value) override;
    void startAnimation() override;
    void stopAnimation() override;

    double minValue = 0;
    double maxValue = 0;
    double doubleValue = 0;
    /// The number of calls of `setNeedsDisplay`.
    std::size_t redrawsAsked = 0;
};

/// Creates interfaces with one shared bar and one line of text. They log nothing, so that the code
/// that uses them can be measured; any other outlet throws std::logic_error.
class QuietInterfaceLoader final : public InterfaceLoader {
public:
    std::unique_ptr<Interface> load(std::string_view name) override;

    QuietProgressIndicator bar;
};

/// An application with one thread and without modal sessions.
class QuietApplication final : public Application {
public:
    void terminate(const void* sender) override;
    int runModalForWindow(Window& window) override;
    void abortModal() override;
    void detachNewThread(std::string_view name, std::function<void()> body) override;
    void performOnMainThread(const std::function<void()>& work) override;
};

/// A panel that the user cancels.
class QuietOpenPanel final : public OpenPanel {
public:
    std::optional<std::filesystem::path> runModal(Kind kind,
                                                  const std::filesystem::path& folder) override;
};

/// A panel that the user cancels.
class QuietSavePanel final : public SavePanel {
public:
    std::optional<std::filesystem::path> runModal(const std::string& name,
                                                  const std::filesystem::path& folder) override;
};

/// Opens no connection.
class QuietConnectionOpener final : public ConnectionOpener {
public:
    std::shared_ptr<Connection> openConnection(const std::string& url,
                                               ConnectionDelegate& delegate) override;
};

/// The ports for a measurement, installed as the desktop during its lifetime.
struct QuietDesktop {
    QuietDesktop();
    ~QuietDesktop() = default;
    QuietDesktop(const QuietDesktop&) = delete;
    QuietDesktop& operator=(const QuietDesktop&) = delete;

    QuietApplication application;
    QuietInterfaceLoader interfaceLoader;
    QuietOpenPanel openPanel;
    QuietConnectionOpener connectionOpener;
    FakeTextFolding textFolding;
    FakeNumberFormat numberFormat;
    QuietSavePanel savePanel;
    Desktop desktop{application, interfaceLoader, openPanel,   connectionOpener,
                    textFolding, savePanel,       numberFormat};
};

}  // namespace dunmora::test
