#include "programs/dunmora/RunDunmora.h"

#include "adapters/posix/ProcessSetup.h"
#include "adapters/posix/ProcessShutdown.h"
#include "adapters/qt/DesktopColorScheme.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtConnectionOpener.h"
#include "adapters/qt/QtInterfaceLoader.h"
#include "adapters/qt/QtNumberFormat.h"
#include "adapters/qt/QtOpenPanel.h"
#include "adapters/qt/QtPath.h"
#include "adapters/qt/QtSavePanel.h"
#include "adapters/qt/QtTextFolding.h"
#include "adapters/qt/QtWorkspace.h"
#include "platform/AddressBook.h"
#include "platform/Bundle.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora/MainWindow.h"
#include "programs/dunmora/PreferencesFailures.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "programs/dunmora/UserGuide.h"
#include "programs/platform/PlatformChoice.h"

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QDBusConnection>
#include <QIcon>
#include <QString>
#include <QWindow>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Links the icon, which nothing else refers to. The macro must be used outside every namespace.
static void linkIcon()
{
    Q_INIT_RESOURCE(dunmora);
}

namespace dunmora {

namespace {

struct Options {
    std::filesystem::path addressBook;
    bool choosesFile = false;
};

/// The options, or the exit status if the program has nothing left to do.
std::variant<Options, int> parse(int argc, char** argv, const Bundle& bundle)
{
    Options options;
    CLI::App app("Finds and removes duplicated people in an address book.");
    app.set_version_flag("--version",
                         "dunmora " +
                             bundle.objectForInfoDictionaryKey("CFBundleVersion").value_or(""));
    auto* const book = app.add_option("ADDRESS-BOOK", options.addressBook,
                                      "A vCard file or a folder of vCard files; " +
                                          std::string(systemAddressBookHelp()) + " (default: " +
                                          std::string(systemAddressBookName()) + ")")
                           ->option_text(" ");
    app.add_flag("--choose", options.choosesFile, "Let me choose a vCard file")->excludes(book);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        constexpr int kUsageError = 2;
        return app.exit(error) == 0 ? EXIT_SUCCESS : kUsageError;
    }
    return options;
}

std::string libraries()
{
    auto text = std::string("Qt ") + qVersion() + ", ";
    if (const auto own = systemAddressBookLibrary(); !own.empty()) {
        text += std::string(own) + ", ";
    }
    return text + "CLI11 and xxHash";
}

/// Opens the address book of the command line or lets the user choose one, or else opens the
/// system's, if it can be opened.
void openFirst(MainWindow& mainWindow, const Options& options)
{
    const std::filesystem::path own = systemAddressBookName();
    if (options.choosesFile) {
        mainWindow.chooseAtLaunch();
    } else if (options.addressBook == own) {
        mainWindow.openAs(SystemBooks::kAll, own);
    } else if (!options.addressBook.empty()) {
        mainWindow.open(options.addressBook);
    } else if (const auto problem = systemAddressBookProblem(); !problem.empty()) {
        mainWindow.explainNoBook(problem);
    } else {
        mainWindow.openByDefault(SystemBooks::kAll, own);
    }
}

/// Makes this the class of all windows on X11, where a desktop looks for the menu entry by it. Qt
/// takes the application's name for the class when it creates the first window, but screen readers
/// show that name to the user, so it can be another one from then on.
void setWindowClass(const QString& id)
{
    QApplication::setApplicationName(id);
    QWindow().create();
}

[[noreturn]] void runProgram(int argc, char** argv, const Options& options, Bundle& bundle)
{
    const auto id = QString::fromStdString(
        bundle.objectForInfoDictionaryKey("CFBundleIdentifier").value_or("dunmora"));
    QApplication::setApplicationDisplayName(QStringLiteral("Dunmora"));
    QApplication::setDesktopFileName(id);
    QApplication qt(argc, argv);
    setWindowClass(id);
    QApplication::setApplicationName(QStringLiteral("dunmora"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/packaging/dunmora.svg")));
    const DesktopColorScheme colorScheme;

    QtApplication application(qt);
    SupervisedApplication supervised(application);
    QtInterfaceLoader interfaceLoader(application.sessions());
    interfaceLoader.setWindowMemory(windowMemory());
    const auto sessionBus = QDBusConnection::sessionBus();
    QtOpenPanel openPanel(application.sessions(), sessionBus);
    QtConnectionOpener connectionOpener;
    const QtTextFolding textFolding;
    const QtNumberFormat numberFormat;
    QtSavePanel savePanel(application.sessions(), sessionBus);
    const Desktop desktop{supervised,  interfaceLoader, openPanel,   connectionOpener,
                          textFolding, savePanel,       numberFormat};
    Desktop::install(desktop);

    PreferencesFailures preferencesFailures(application);
    const auto preferences =
        userDefaults([&](const std::string& message) { preferencesFailures.report(message); });
    QtAlert alert(application);
    QtWorkspace workspace(application);
    Platform platform{nullptr, *preferences, alert, workspace, bundle};
    Platform::install(platform);

    // Set before the window is shown, so before anything can be dropped on it.
    MainWindow* dropTarget = nullptr;
    interfaceLoader.setDropHandler("OnOpen", [&](const std::vector<std::filesystem::path>& paths) {
        dropTarget->openDropped(paths);
    });
    const UserGuide guide(pathOf(QApplication::applicationDirPath()), DUNMORA_GUIDE_FOLDER);
    MainWindow mainWindow(supervised, platform, openAddressBook, libraries(), guide);
    dropTarget = &mainWindow;
    const bool hasSeveral = !severalAddressBooksName().empty();
    mainWindow.offerSystemBooks(systemAddressBookName(),
                                hasSeveral ? listDesktopBookNames : SystemBooks::List());
    openFirst(mainWindow, options);
    mainWindow.show();
    preferencesFailures.showAtLaunch();
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
        // Qt aborts the process when it finds no display.
        if (!hasDisplay()) {
            std::cerr << "dunmora: No display is available. Use dunmora-cli in a terminal.\n";
            return EXIT_FAILURE;
        }
        linkIcon();
        runProgram(argc, argv, std::get<Options>(options), bundle);
    } catch (const std::exception& error) {
        std::cerr << "dunmora: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}

}  // namespace dunmora
