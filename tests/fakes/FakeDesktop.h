#pragma once

#include "platform/Desktop.h"
#include "platform/OpenPanel.h"
#include "platform/SavePanel.h"
#include "tests/fakes/FakeApplication.h"
#include "tests/fakes/FakeConnections.h"
#include "tests/fakes/FakeInterface.h"
#include "tests/fakes/FakeNumberFormat.h"
#include "tests/fakes/FakeTextFolding.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {

/// Returns the file that the test has chosen.
class FakeOpenPanel final : public OpenPanel {
public:
    std::optional<std::filesystem::path> runModal(Kind kind,
                                                  const std::filesystem::path& folder) override;

    std::optional<std::filesystem::path> choice;
    /// What was looked for so far, and the folders in which the panel started.
    std::vector<Kind> kinds;
    std::vector<std::filesystem::path> folders;
};

/// Returns the path that the test has chosen.
class FakeSavePanel final : public SavePanel {
public:
    std::optional<std::filesystem::path> runModal(const std::string& name,
                                                  const std::filesystem::path& folder) override;

    std::optional<std::filesystem::path> choice;
    /// The names proposed so far, and the folders in which the panel started.
    std::vector<std::string> names;
    std::vector<std::filesystem::path> folders;
};

/// A fake for every port of a program with windows, installed as the desktop during its lifetime.
struct FakeDesktop {
    FakeDesktop();
    ~FakeDesktop();
    FakeDesktop(const FakeDesktop&) = delete;
    FakeDesktop& operator=(const FakeDesktop&) = delete;

    FakeInterfaceLoader interfaceLoader;
    FakeOpenPanel openPanel;
    FakeSavePanel savePanel;
    FakeConnections connections;
    FakeTextFolding textFolding;
    FakeNumberFormat numberFormat;
    // Destroyed first: it waits for the threads, which use the others.
    FakeApplication application;
    Desktop desktop{application, interfaceLoader, openPanel,   connections,
                    textFolding, savePanel,       numberFormat};
};

}  // namespace dunmora::test
