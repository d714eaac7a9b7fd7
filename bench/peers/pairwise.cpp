// Finds people with the same first and last name by comparing everybody with everybody else, as
// tools without an index do. Only the names are read.
//
//     pairwise FILE

#include <cstddef>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include <strings.h>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: pairwise FILE\n";
        return 2;
    }
    std::ifstream file(argv[1]);
    std::vector<std::string> names;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("N:")) {
            names.push_back(line);
        }
    }
    std::size_t pairs = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = i + 1; j < names.size(); ++j) {
            pairs += strcasecmp(names[i].c_str(), names[j].c_str()) == 0 ? 1 : 0;
        }
    }
    std::cout << pairs << '\n';
    return names.empty() ? 1 : 0;
}
