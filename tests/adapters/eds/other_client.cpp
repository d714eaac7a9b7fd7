#include "tests/adapters/eds/OtherClient.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

/// Uses the desktop's address books next to the program under test:
///     other_client make UID NAME CARD...   creates a book with these vCards
///     other_client cards UID               prints each uid and each card, followed by a NUL byte
int main(int argc, char* argv[])
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        dunmora::test::OtherClient client;
        if (arguments.size() >= 3 && arguments[0] == "make") {
            client.makeBook(arguments[1], arguments[2]);
            client.add(arguments[1], {arguments.begin() + 3, arguments.end()});
            return 0;
        }
        if (arguments.size() == 2 && arguments[0] == "cards") {
            for (const auto& [uid, card] : client.cards(arguments[1])) {
                std::cout << uid << '\0' << card << '\0';
            }
            return 0;
        }
        std::cerr << "other_client: make UID NAME CARD... or cards UID\n";
    } catch (const std::exception& error) {
        std::cerr << "other_client: " << error.what() << '\n';
    }
    return 1;
}
