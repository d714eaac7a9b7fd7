#include "adapters/bundle/BuildBundle.h"
#include "adapters/posix/ProcessSetup.h"
#include "adapters/posix/ProcessShutdown.h"
#include "adapters/posix/StreamContent.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora-cli/Charset.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/EncodedStream.h"
#include "programs/dunmora-cli/RunCli.h"
#include "programs/dunmora-cli/StandardInput.h"
#include "programs/platform/PlatformChoice.h"
#include "programs/platform/StandardInputBook.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

std::string_view environmentVariable(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing of ours changes the environment
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// The columns of the terminal behind a stream. The user's COLUMNS comes first (POSIX, Environment
/// Variables).
std::size_t terminalColumns(int stream)
{
    constexpr std::size_t kUsual = 80;
    const auto preferred = environmentVariable("COLUMNS");
    std::size_t columns = 0;
    const auto* const end = preferred.data() + preferred.size();
    const auto parsed = std::from_chars(preferred.data(), end, columns);
    if (parsed.ec == std::errc() && parsed.ptr == end && columns > 0) {
        return columns;
    }
    winsize size{};
    return ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

/// The locale's charset. Where the locale is not installed, such as that of another computer from
/// which the user has logged in, its name says which one it is.
std::string charsetName()
{
    if (auto* const locale = newlocale(LC_CTYPE_MASK, "", nullptr); locale != nullptr) {
        std::string name = nl_langinfo_l(CODESET, locale);
        freelocale(locale);
        return name;
    }
    for (const auto* const variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const auto name = environmentVariable(variable); !name.empty()) {
            const auto point = name.find('.');
            return std::string(point == std::string_view::npos
                                   ? std::string_view()
                                   : name.substr(point + 1, name.find('@') - point - 1));
        }
    }
    return {};
}

/// Whether the terminal knows no control sequences, or nothing is known of it.
bool isDumbTerminal()
{
    const auto terminal = environmentVariable("TERM");
    return terminal.empty() || terminal == "dumb";
}

/// See https://no-color.org.
bool wantsColour()
{
    return environmentVariable("NO_COLOR").empty() && !isDumbTerminal();
}

int runProgram(const std::vector<std::string>& arguments)
{
    using namespace dunmora;
    const auto preferences = userDefaults();
    BuildBundle bundle;
    const Charset charset(charsetName());
    EncodedStream errBuffer(std::cerr, charset);
    std::ostream err(&errBuffer);
    CliEnvironment environment{openAddressBook,
                               *preferences,
                               bundle,
                               std::cin,
                               std::cout,
                               err,
                               isatty(STDIN_FILENO) == 1,
                               isatty(STDOUT_FILENO) == 1,
                               isatty(STDERR_FILENO) == 1,
                               terminalColumns(STDERR_FILENO),
                               wantsColour(),
                               listDesktopBooks,
                               std::string(systemAddressBookHelp()),
                               std::string(severalAddressBooksName()),
                               terminalColumns(STDOUT_FILENO),
                               isDumbTerminal()};
    environment.charset = charset;
    environment.listDesktopBookNames = listDesktopBookNames;
    environment.openStandardInput = [] { return openStandardInput(kStandardInput); };
    environment.readStandardInput = [](std::uintmax_t largest) {
        return std::string(readStandardInput(largest).view());
    };
    return runCli(arguments, environment);
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
