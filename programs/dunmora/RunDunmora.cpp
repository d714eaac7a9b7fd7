#include "programs/dunmora/RunDunmora.h"

#include "adapters/defaults/IniUserDefaults.h"
#include "adapters/posix/ProcessSetUp.h"
#include "adapters/qt/DesktopColorScheme.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtConnectionOpener.h"
#include "adapters/qt/QtInterfaceLoader.h"
#include "adapters/qt/QtOpenPanel.h"
#include "adapters/qt/QtWorkspace.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "platform/Bundle.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "programs/dunmora/MainWindow.h"
#include "programs/dunmora/SelectedAddressBook.h"
#include "programs/dunmora/SupervisedApplication.h"

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QIcon>
#include <QString>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// A linker takes from a library only what something names. Stands outside every namespace because
/// the macro declares a function.
static void keepIcon()
{
    Q_INIT_RESOURCE(dunmora);
}

namespace dunmora {

namespace {

struct Options {
    std::filesystem::path addressBook;
};

/// The options, or the exit status of a program that has said all there is to say.
std::variant<Options, int> parse(int argc, char** argv, const Bundle& bundle)
{
    Options options;
    CLI::App app("Finds and removes duplicated people in an address book.");
    app.set_version_flag("--version",
                         "dunmora " +
                             bundle.objectForInfoDictionaryKey("CFBundleVersion").value_or(""));
    app.add_option("ADDRESS-BOOK", options.addressBook, "A vCard file or a folder of vCard files")
        ->option_text(" ");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        constexpr int kWrongUse = 2;
        return app.exit(error) == 0 ? EXIT_SUCCESS : kWrongUse;
    }
    return options;
}

bool isSet(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

/// Qt ends the process by a crash where it finds no display; who started the program is told
/// better.
bool hasDisplay()
{
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

std::string libraries()
{
    return std::string("Qt ") + qVersion() +
           " for its windows, CLI11 for its options and xxHash for the names of cards";
}

[[noreturn]] void runProgram(int argc, char** argv, const Options& options, Bundle& bundle)
{
    QApplication::setApplicationName(QStringLiteral("dunmora"));
    QApplication::setApplicationDisplayName(QStringLiteral("Dunmora"));
    QApplication::setDesktopFileName(QStringLiteral("dunmora"));
    QApplication qt(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/packaging/dunmora.svg")));
    const DesktopColorScheme colorScheme;

    QtApplication application(qt);
    SupervisedApplication supervised(application);
    QtInterfaceLoader interfaceLoader(application.sessions());
    QtOpenPanel openPanel(application.sessions());
    QtConnectionOpener connectionOpener;
    const Desktop desktop{supervised, interfaceLoader, openPanel, connectionOpener};
    Desktop::install(desktop);

    SelectedAddressBook addressBook;
    IniUserDefaults userDefaults(IniUserDefaults::perUserFile());
    QtAlert alert(application);
    QtWorkspace workspace(application);
    const Platform platform{addressBook, userDefaults, alert, workspace, bundle};
    Platform::install(platform);

    // Nothing can be dropped before the window it is dropped on is there.
    MainWindow* dropTarget = nullptr;
    interfaceLoader.setDropHandler(
        "OnOpen", [&](const std::filesystem::path& path) { dropTarget->open(path); });
    MainWindow mainWindow(
        supervised, addressBook,
        [](const std::filesystem::path& path) { return std::make_unique<VCardAddressBook>(path); },
        libraries());
    dropTarget = &mainWindow;
    if (!options.addressBook.empty()) {
        mainWindow.open(options.addressBook);
    }
    mainWindow.show();
    application.run(mainWindow);
}

}  // namespace

int runDunmora(int argc, char** argv, Bundle& bundle)
{
    try {
        occupyStandardStreams();
        takeWriteSignalsAsErrors();
        const auto options = parse(argc, argv, bundle);
        if (const auto* const status = std::get_if<int>(&options)) {
            return *status;
        }
        if (!hasDisplay()) {
            std::cerr
                << "dunmora: There is no display. In a terminal, dunmora-cli does the same.\n";
            return EXIT_FAILURE;
        }
        keepIcon();
        runProgram(argc, argv, std::get<Options>(options), bundle);
    } catch (const std::exception& error) {
        std::cerr << "dunmora: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}

}  // namespace dunmora
