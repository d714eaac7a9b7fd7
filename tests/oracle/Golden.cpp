#include "tests/oracle/Golden.h"

#include <fstream>
#include <stdexcept>

namespace dunmora::test {

namespace {

std::string unescaped(const std::string& field)
{
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] != '\\' || i + 1 == field.size()) {
            text += field[i];
            continue;
        }
        ++i;
        switch (field[i]) {
        case 'n':
            text += '\n';
            break;
        case 'r':
            text += '\r';
            break;
        case 't':
            text += '\t';
            break;
        default:
            text += field[i];
        }
    }
    return text;
}

std::vector<std::string> fieldsOf(const std::string& line)
{
    std::vector<std::string> fields;
    std::size_t start = 0;
    while (true) {
        const auto end = line.find('\t', start);
        fields.push_back(unescaped(line.substr(start, end - start)));
        if (end == std::string::npos) {
            return fields;
        }
        start = end + 1;
    }
}

}  // namespace

std::map<std::string, std::vector<OraclePerson>> readGolden(const std::filesystem::path& file)
{
    std::map<std::string, std::vector<OraclePerson>> people;
    std::vector<OraclePerson>* current = nullptr;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        const auto fields = fieldsOf(line);
        if (fields[0] == "F") {
            current = &people[fields.at(1)];
        } else if (fields[0] == "C" && current != nullptr) {
            auto& person = current->emplace_back();
            person.uid = fields.at(1);
            setNames(person, fields.at(4), fields.at(3), fields.at(2));
            person.nickname = fields.at(5);
        } else if (fields[0] == "T" && current != nullptr && !current->empty()) {
            current->back().phones.push_back(
                {expectedLabel({fields.at(2)}, fields.at(3)), withoutScheme(fields.at(1))});
        } else {
            throw std::runtime_error("golden.tsv has an unknown line: " + line);
        }
    }
    return people;
}

}  // namespace dunmora::test
