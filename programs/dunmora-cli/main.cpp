#include "adapters/bundle/BuildBundle.h"
#include "adapters/posix/ProcessSetup.h"
#include "adapters/posix/ProcessShutdown.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/RunCli.h"
#include "programs/platform/PlatformChoice.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::size_t terminalWidth()
{
    constexpr std::size_t kUsual = 80;
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

std::string_view environmentVariable(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing of ours changes the environment
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// See https://no-color.org; a dumb terminal knows no colours.
bool wantsColour()
{
    return environmentVariable("NO_COLOR").empty() && environmentVariable("TERM") != "dumb";
}

int runProgram(const std::vector<std::string>& arguments)
{
    using namespace dunmora;
    const auto preferences = userDefaults();
    BuildBundle bundle;
    return runCli(arguments,
                  {openAddressBook, *preferences, bundle, std::cin, std::cout, std::cerr,
                   isatty(STDIN_FILENO) == 1, isatty(STDOUT_FILENO) == 1,
                   isatty(STDERR_FILENO) == 1, terminalWidth(), wantsColour(), listDesktopBooks,
                   std::string(systemAddressBookHelp()), std::string(severalAddressBooksName())});
}

}  // namespace

int main(int argc, char* argv[])
{
    try {
        dunmora::reserveStandardStreams();
        dunmora::ignoreWriteSignals();
        dunmora::exitOnSignals(std::nullopt);
        return runProgram({argv + std::min(argc, 1), argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "dunmora-cli: " << error.what() << '\n';
        return 1;
    }
}
