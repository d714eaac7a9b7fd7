#include "programs/dunmora-cli/MatchFieldNames.h"

#include "base/Settings.h"
#include "programs/dunmora-cli/CommandError.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace dunmora {

namespace {

// In the order of kMatchFields.
constexpr std::array<std::string_view, kMatchFields.size()> kNames{
    "nickname", "firstname", "lastname", "home", "work", "mobile"};

constexpr std::string_view kBlanks = " \t";

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::size_t positionOf(std::string_view name)
{
    const auto* const found = std::find(kNames.begin(), kNames.end(), name);
    if (found == kNames.end()) {
        throw CommandError(ExitCode::WrongUse, "“" + std::string(name) +
                                                   "” is no match field. The match fields are "
                                                   "firstname,lastname,nickname,home,work,mobile.");
    }
    return static_cast<std::size_t>(found - kNames.begin());
}

}  // namespace

MatchFieldChoice parseMatchFields(std::string_view list)
{
    MatchFieldChoice choice;
    if (trimmed(list).empty()) {
        return choice;
    }
    for (std::size_t begin = 0; begin <= list.size();) {
        const auto end = std::min(list.find(',', begin), list.size());
        choice.set(positionOf(trimmed(list.substr(begin, end - begin))));
        begin = end + 1;
    }
    return choice;
}

std::vector<std::string_view> namesOf(const MatchFieldChoice& choice)
{
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (choice.test(i)) {
            names.push_back(kNames[i]);
        }
    }
    return names;
}

MatchFieldChoice chosenMatchFields()
{
    const auto& settings = Settings::settings();
    MatchFieldChoice choice;
    for (std::size_t i = 0; i < kMatchFields.size(); ++i) {
        choice.set(i, (settings.*kMatchFields[i].isOn)());
    }
    return choice;
}

void storeMatchFields(const MatchFieldChoice& choice)
{
    auto& settings = Settings::settings();
    // Each flag is stored by itself. On before off: a program that reads in between must not find
    // that no field is chosen.
    for (const bool on : {true, false}) {
        for (std::size_t i = 0; i < kMatchFields.size(); ++i) {
            if (choice.test(i) == on) {
                (settings.*kMatchFields[i].turn)(on);
            }
        }
    }
}

bool insistOnMatchField(const MatchFieldChoice& choice)
{
    if (choice.none()) {
        Settings::MsgBox("You should choose at least one field as match condition!");
    }
    return choice.any();
}

}  // namespace dunmora
