#include "tests/adapters/eds/PrivateDesktop.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>

namespace dunmora::test {

namespace {

constexpr auto kServiceFolder = "/usr/share/dbus-1/services";
constexpr auto kBusProgram = "/usr/bin/dbus-daemon";

/// The files from which a bus knows how to start the service.
std::vector<std::filesystem::path> serviceFiles()
{
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(kServiceFolder, error)) {
        const auto name = entry.path().filename().string();
        if (name.starts_with("org.gnome.evolution.dataserver.Sources") ||
            name.starts_with("org.gnome.evolution.dataserver.AddressBook")) {
            files.push_back(entry.path());
        }
    }
    return files;
}

void setVariable(const char* name, const std::string& value)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet
    setenv(name, value.c_str(), 1);
}

}  // namespace

bool PrivateDesktop::isPossible()
{
    return std::filesystem::exists(kBusProgram) && serviceFiles().size() >= 2;
}

PrivateDesktop& PrivateDesktop::ofThisProcess()
{
    static PrivateDesktop desktop;
    return desktop;
}

PrivateDesktop::PrivateDesktop()
{
    using std::filesystem::perms;
    const auto& folder = folder_.path();
    for (const auto* name : {"home", "config", "data", "cache", "run", "services"}) {
        std::filesystem::create_directory(folder / name);
        std::filesystem::permissions(folder / name, perms::owner_all);
    }
    setVariable("HOME", folder / "home");
    setVariable("XDG_CONFIG_HOME", folder / "config");
    setVariable("XDG_DATA_HOME", folder / "data");
    setVariable("XDG_CACHE_HOME", folder / "cache");
    setVariable("XDG_RUNTIME_DIR", folder / "run");
    setVariable("XDG_DATA_DIRS", "/usr/share");
    setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder / "run/bus").string());
    setVariable("GSETTINGS_BACKEND", "memory");
    setVariable("GIO_USE_VFS", "local");
    setVariable("LC_ALL", "C.UTF-8");

    // This process becomes the parent of the bus's children when the bus ends.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    for (const auto& file : serviceFiles()) {
        std::filesystem::copy_file(file, folder / "services" / file.filename());
    }
    write(folder / "bus.conf",
          "<busconfig><type>session</type><listen>unix:path=" + (folder / "run/bus").string() +
              "</listen><auth>EXTERNAL</auth><servicedir>" + (folder / "services").string() +
              "</servicedir><policy context=\"default\"><allow send_destination=\"*\" "
              "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow "
              "own=\"*\"/></policy></busconfig>");
    startBus(folder / "bus.conf");
}

void PrivateDesktop::startBus(const std::filesystem::path& configuration)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("No pipe.");
    }
    const auto configurationOption = "--config-file=" + configuration.string();
    const auto log = (folder_.path() / "log").string();
    bus_ = fork();
    if (bus_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        // The service inherits standard error and prints a lot.
        const int file = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, S_IRUSR | S_IWUSR);
        dup2(ends[1], STDOUT_FILENO);
        dup2(file, STDERR_FILENO);
        execl(kBusProgram, kBusProgram, configurationOption.c_str(), "--nofork", "--nosyslog",
              "--print-address", nullptr);
        _exit(1);
    }
    close(ends[1]);
    // The bus prints its address once it listens.
    char first = '\0';
    const auto count = read(ends[0], &first, 1);
    close(ends[0]);
    if (count != 1) {
        throw std::runtime_error("The bus could not be started: " + contentOf(log));
    }
}

std::string PrivateDesktop::stored(const std::string& book) const
{
    const auto folder = folder_.path() / "data/evolution/addressbook" / book;
    std::string traces;
    for (const auto& name : namesIn(folder)) {
        if (name.starts_with("contacts.db")) {
            const auto content = contentOf(folder / name);
            traces += name + " " + std::to_string(std::hash<std::string>()(content)) + "\n";
        }
    }
    if (traces.empty()) {
        throw std::runtime_error("Nothing is stored of the book " + book);
    }
    return traces;
}

void PrivateDesktop::endBus()
{
    if (bus_ > 0) {
        kill(bus_, SIGKILL);
        waitpid(bus_, nullptr, 0);
        bus_ = -1;
    }
}

PrivateDesktop::~PrivateDesktop()
{
    endBus();
    // The service ends when its bus does, unless a test has stopped it.
    for (int i = 0; i < 200 && !processes().empty(); ++i) {
        for (const auto process : processes()) {
            kill(process, i < 100 ? SIGCONT : SIGKILL);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    while (waitpid(-1, nullptr, WNOHANG) > 0) {}
}

std::size_t PrivateDesktop::signalFactories(int signal) const
{
    std::size_t count = 0;
    for (const auto process : processes()) {
        const auto program = contentOf("/proc/" + std::to_string(process) + "/cmdline");
        if (program.find("evolution-addressbook-factory") != std::string::npos &&
            kill(process, signal) == 0) {
            ++count;
        }
    }
    return count;
}

/// The processes that were started on this bus.
std::vector<pid_t> PrivateDesktop::processes() const
{
    const auto mark = "DBUS_SESSION_BUS_ADDRESS=unix:path=" + (folder_.path() / "run/bus").string();
    std::vector<pid_t> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        pid_t process = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
        if (error == std::errc() && process != getpid() &&
            contentOf(entry.path() / "environ").find(mark) != std::string::npos) {
            found.push_back(process);
        }
    }
    return found;
}

}  // namespace dunmora::test
