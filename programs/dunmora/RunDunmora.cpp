#include "programs/dunmora/RunDunmora.h"

#include "adapters/posix/ProcessSetup.h"
#include "adapters/posix/ProcessShutdown.h"
#include "adapters/qt/DesktopColorScheme.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtConnectionOpener.h"
#include "adapters/qt/QtInterfaceLoader.h"
#include "adapters/qt/QtOpenPanel.h"
#include "adapters/qt/QtWorkspace.h"
#include "platform/AddressBook.h"
#include "platform/Bundle.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora/MainWindow.h"
#include "programs/dunmora/SelectedAddressBook.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "programs/platform/PlatformChoice.h"

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
    app.add_option("ADDRESS-BOOK", options.addressBook,
                   "A vCard file or a folder of vCard files; " +
                       std::string(systemAddressBookHelp()))
        ->option_text(" ");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        constexpr int kWrongUse = 2;
        return app.exit(error) == 0 ? EXIT_SUCCESS : kWrongUse;
    }
    return options;
}

std::string libraries()
{
    auto text = std::string("Qt ") + qVersion() + " for its windows, ";
    if (const auto own = systemAddressBookLibrary(); !own.empty()) {
        text += std::string(own) + ", ";
    }
    return text + "CLI11 for its options and xxHash for the names of cards";
}

/// Opens the address book of the command line; without one, the user's own if the machine has one.
void openFirst(MainWindow& mainWindow, const Options& options)
{
    const std::filesystem::path own = systemAddressBookName();
    const bool isDefault = options.addressBook.empty() && hasSystemAddressBook();
    if (isDefault || options.addressBook == own) {
        mainWindow.openAs("Address Book", own);
    } else if (!options.addressBook.empty()) {
        mainWindow.open(options.addressBook);
    }
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
    const auto preferences = userDefaults();
    QtAlert alert(application);
    QtWorkspace workspace(application);
    const Platform platform{addressBook, *preferences, alert, workspace, bundle};
    Platform::install(platform);

    // Nothing can be dropped before the window it is dropped on is there.
    MainWindow* dropTarget = nullptr;
    interfaceLoader.setDropHandler(
        "OnOpen", [&](const std::filesystem::path& path) { dropTarget->open(path); });
    MainWindow mainWindow(supervised, addressBook, openAddressBook, libraries());
    dropTarget = &mainWindow;
    openFirst(mainWindow, options);
    mainWindow.show();
    application.run(mainWindow);
}

}  // namespace

int runDunmora(int argc, char** argv, Bundle& bundle)
{
    try {
        reserveStandardStreams();
        ignoreWriteSignals();
        exitOnSignals(EXIT_SUCCESS);
        const auto options = parse(argc, argv, bundle);
        if (const auto* const status = std::get_if<int>(&options)) {
            return *status;
        }
        // Qt ends the process by a crash where it finds no display; who started the program is
        // told better.
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
