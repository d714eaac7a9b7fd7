// Measures the processor time (user and system) of the terminal program on big books, next to that
// of `wc -l` and of GNOME's EVCard on the same file in the same run, and prints a table. The ratios
// mean more than the milliseconds, because computers differ; no time is a failure.
//
//     list_bench DUNMORA-CLI [EVCARD-READ [CARDS]]
//
// CARDS is the size of the smallest book, by default 100,000. Without EVCARD-READ, or if it is
// empty, EVCard is not measured.

#include "bench/big_book.h"
#include "tests/fakes/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dunmora::bench {

namespace {

namespace fs = std::filesystem;

double milliseconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// Runs `work` in a child process, discards its standard output, and returns the processor time in
/// milliseconds.
double processorTime(const std::function<void()>& work)
{
    const auto child = ::fork();
    if (child == 0) {
        const auto nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        ::dup2(nowhere, STDOUT_FILENO);
        work();
        ::_exit(EXIT_SUCCESS);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != EXIT_SUCCESS) {
        throw std::runtime_error("a measured program failed");
    }
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// Returns a function that replaces this process with a program.
std::function<void()> program(std::vector<std::string> arguments)
{
    return [arguments = std::move(arguments)]() mutable {
        std::vector<char*> pointers;
        for (auto& argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        ::execvp(pointers[0], pointers.data());
        ::_exit(EXIT_FAILURE);
    };
}

/// Returns the median time of several runs, each after `prepare`.
double median(
    const std::function<void()>& work, const std::function<void()>& prepare = [] {})
{
    std::array<double, 5> times{};
    for (auto& time : times) {
        prepare();
        time = processorTime(work);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

constexpr int kColumnWidth = 12;

template <typename... Cells>
void printRow(const Cells&... cells)
{
    std::cout << std::fixed << std::setprecision(2);
    ((std::cout << std::setw(kColumnWidth) << cells), ...) << std::endl;
}

/// Lists books of several sizes: the cost per card must not grow with the book.
void measureLists(const std::string& cli, const std::string& evcardRead, std::size_t fewestCards,
                  const fs::path& folder)
{
    const auto file = (folder / "book.vcf").string();
    const std::array<std::string, 2> formats = {"table", "json"};
    std::array<double, 2> smallest{};
    printRow("list", "format", "CPU ms", "us/card", "x smallest", "x wc -l", "x EVCard");
    for (const std::size_t times : {1, 4, 10}) {
        const auto cards = times * fewestCards;
        test::write(file, bigBook({.cards = cards}));
        const auto lines = median(program({"wc", "-l", file}));
        const auto evcard = evcardRead.empty() ? 0 : processorTime(program({evcardRead, file}));
        for (std::size_t i = 0; i < formats.size(); ++i) {
            const auto time = median(program({cli, "list", file, "--match", "firstname,lastname",
                                              "--format", formats[i], "--quiet"}));
            const auto perCard = time * 1e3 / static_cast<double>(cards);
            if (smallest[i] == 0) {
                smallest[i] = perCard;
            }
            printRow(cards, formats[i], time, perCard, perCard / smallest[i], time / lines,
                     evcard == 0 ? 0 : time / evcard);
        }
    }
}

/// Deletes all copies from a book with two cards for everyone.
void measureDeletion(const std::string& cli, std::size_t cards, const fs::path& folder)
{
    const auto book = bigBook({.cards = cards, .percentWithCopy = 100});
    const auto file = folder / "copies.vcf";
    const auto time = median(program({cli, "delete", file.string(), "--match", "firstname,lastname",
                                      "--yes", "--quiet"}),
                             [&] { test::write(file, book); });
    if (fs::file_size(file) * 2 > book.size() + book.size() / 100) {
        throw std::runtime_error("the deletion did not remove half of the book");
    }
    printRow("delete", "of", "CPU ms");
    printRow(cards / 2, cards, time);
}

}  // namespace

}  // namespace dunmora::bench

int main(int argc, char** argv)
{
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 2) {
        std::cerr << "usage: list_bench DUNMORA-CLI [EVCARD-READ [CARDS]]\n";
        return 2;
    }
    try {
        const dunmora::test::TemporaryFolder temporary;
        const auto& folder = temporary.path();
        // Neither reads nor changes the user's preferences.
        // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread
        ::setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
        const std::size_t cards = arguments.size() > 3 ? std::stoul(arguments[3]) : 100'000;
        dunmora::bench::measureLists(arguments[1], arguments.size() > 2 ? arguments[2] : "", cards,
                                     folder);
        dunmora::bench::measureDeletion(arguments[1], cards, folder);
    } catch (const std::exception& error) {
        std::cerr << "list_bench: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
