#include "adapters/bundle/BuildBundle.h"
#include "adapters/defaults/IniUserDefaults.h"
#include "adapters/vcard/VCardAddressBook.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/RunCli.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// Fills the places of standard streams that the caller has closed with something that fails to be
/// read or written, too: the address book, opened next, must not end up in their place.
void occupyStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is taken, which is this one.
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

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
    IniUserDefaults userDefaults(IniUserDefaults::perUserFile());
    BuildBundle bundle;
    return runCli(arguments,
                  {[](const std::string& name) { return std::make_unique<VCardAddressBook>(name); },
                   userDefaults, bundle, std::cin, std::cout, std::cerr, isatty(STDIN_FILENO) == 1,
                   isatty(STDOUT_FILENO) == 1, isatty(STDERR_FILENO) == 1, terminalWidth(),
                   wantsColour()});
}

}  // namespace

int main(int argc, char* argv[])
{
    try {
        occupyStandardStreams();
        // A reader who has gone away and a file that may not grow are errors like any other;
        // neither must end a deletion midway.
        std::signal(SIGPIPE, SIG_IGN);
        std::signal(SIGXFSZ, SIG_IGN);
        return runProgram({argv + std::min(argc, 1), argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "dunmora-cli: " << error.what() << '\n';
        return 1;
    }
}
