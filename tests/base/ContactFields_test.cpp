#include "base/ContactFields.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

std::string interfaceFile(const std::string& name)
{
    std::ifstream file(std::string(DUNMORA_INTERFACES) + "/" + name);
    EXPECT_TRUE(file.is_open()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ContactFields, GiveTheirPlacesInAMatchKey)
{
    Texts keys;
    for (const auto* const field : kMatchFields) {
        keys.emplace_back(field->key);
    }

    EXPECT_EQ(keys, (Texts{"nickname", "fname", "lname", "home", "work", "mobile"}));
}

TEST(ContactFields, HaveTheirCheckBoxesInTheDialog)
{
    const auto dialog = interfaceFile("FilterWindow.ui");

    for (const auto* const field : kMatchFields) {
        EXPECT_NE(dialog.find("name=\"" + std::string(field->match->checkBox) + "\""),
                  std::string::npos)
            << field->match->checkBox;
    }
}

}  // namespace
}  // namespace dunmora::test
