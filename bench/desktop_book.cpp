// Runs a program on a private desktop whose only filled address book holds the cards of a file. The
// desktop's folders and its message bus are new and end with this program.
//
//     desktop_book FILE PROGRAM [ARGUMENT...]
//
// The book's id is kBook. Exits with the program's status, or with 77 if no desktop can be started.

#include "bench/peers/desktop_book.h"
#include "tests/adapters/eds/OtherClient.h"
#include "tests/adapters/eds/PrivateDesktop.h"
#include "tests/fakes/TemporaryFolder.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace dunmora::bench {

namespace {

std::vector<std::string> cardsOf(const std::string& book)
{
    constexpr std::string_view kEnd = "END:VCARD\r\n";
    std::vector<std::string> cards;
    for (std::size_t begin = 0; begin < book.size();) {
        const auto found = book.find(kEnd, begin);
        if (found == std::string::npos) {
            throw std::runtime_error("the last card has no end");
        }
        cards.push_back(book.substr(begin, found + kEnd.size() - begin));
        begin = found + kEnd.size();
    }
    return cards;
}

int run(char** command)
{
    const auto child = fork();
    if (child == 0) {
        execvp(command[0], command);
        perror(command[0]);
        _exit(1);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return 1;
    }
    return WEXITSTATUS(status);
}

}  // namespace

}  // namespace dunmora::bench

int main(int argc, char** argv)
{
    constexpr int kNotPossible = 77;
    if (argc < 3) {
        std::cerr << "usage: desktop_book FILE PROGRAM [ARGUMENT...]\n";
        return 2;
    }
    if (!dunmora::test::PrivateDesktop::isPossible()) {
        std::cerr << "desktop_book: the address book service or its bus is not installed\n";
        return kNotPossible;
    }
    try {
        dunmora::test::PrivateDesktop::ofThisProcess();
        dunmora::test::OtherClient client;
        client.makeBook(dunmora::bench::kBook, "Benchmark");
        client.add(dunmora::bench::kBook,
                   dunmora::bench::cardsOf(dunmora::test::contentOf(argv[1])));
        return dunmora::bench::run(argv + 2);
    } catch (const std::exception& error) {
        std::cerr << "desktop_book: " << error.what() << '\n';
        return 1;
    }
}
