// Writes the benchmarks' address book as a vCard file, or as a folder with a file for each card.
//
//     write_book file|folder PATH CARDS PERCENT-WITH-COPY equal|different
//
// The last word says whether copies differ in more than their UID.

#include "bench/big_book.h"
#include "tests/fakes/TemporaryFolder.h"

#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

void writeFolder(const std::filesystem::path& folder, std::string_view book)
{
    constexpr std::string_view kEnd = "END:VCARD\r\n";
    std::filesystem::create_directory(folder);
    for (std::size_t begin = 0, card = 0; begin < book.size(); ++card) {
        const auto end = book.find(kEnd, begin) + kEnd.size();
        dunmora::test::write(folder / (std::to_string(card) + ".vcf"),
                             book.substr(begin, end - begin));
        begin = end;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() != 5 || (arguments[0] != "file" && arguments[0] != "folder") ||
        (arguments[4] != "equal" && arguments[4] != "different")) {
        std::cerr << "usage: write_book file|folder PATH CARDS PERCENT-WITH-COPY equal|different\n";
        return 2;
    }
    try {
        const auto book = dunmora::bench::bigBook({.cards = std::stoul(arguments[2]),
                                                   .percentWithCopy = std::stoul(arguments[3]),
                                                   .copiesDiffer = arguments[4] == "different"});
        if (arguments[0] == "folder") {
            writeFolder(arguments[1], book);
        } else {
            dunmora::test::write(arguments[1], book);
        }
    } catch (const std::exception& error) {
        std::cerr << "write_book: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
