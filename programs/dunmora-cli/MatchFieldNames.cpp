#include "programs/dunmora-cli/MatchFieldNames.h"

#include "base/Settings.h"
#include "programs/dunmora-cli/CommandError.h"
#include "review/ReviewTexts.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <cstddef>

namespace dunmora {

namespace {

std::size_t placeOf(std::string_view name)
{
    const auto* const found =
        std::find_if(kMatchFields.begin(), kMatchFields.end(),
                     [&](const ContactField* field) { return field->match->option == name; });
    if (found == kMatchFields.end()) {
        throw CommandError(ExitCode::WrongUse, quotedText(name) +
                                                   " is not a match field. The match fields are " +
                                                   matchFieldList() + '.');
    }
    return (*found)->match->place;
}

}  // namespace

std::string matchFieldList()
{
    std::string list;
    for (const auto& field : kContactFields) {
        if (field.match) {
            list += list.empty() ? "" : ",";
            list += field.match->option;
        }
    }
    return list;
}

MatchFieldChoice parseMatchFields(std::string_view list)
{
    MatchFieldChoice choice;
    if (trimmed(list).empty()) {
        return choice;
    }
    for (std::size_t begin = 0; begin <= list.size();) {
        const auto end = std::min(list.find(',', begin), list.size());
        choice.set(placeOf(trimmed(list.substr(begin, end - begin))));
        begin = end + 1;
    }
    return choice;
}

std::vector<std::string_view> namesOf(const MatchFieldChoice& choice)
{
    std::vector<std::string_view> names;
    for (const auto* const field : kMatchFields) {
        if (choice.test(field->match->place)) {
            names.push_back(field->match->option);
        }
    }
    return names;
}

bool insistOnMatchField(const MatchFieldChoice& choice)
{
    if (choice.none()) {
        Settings::MsgBox(kNoMatchField);
    }
    return choice.any();
}

}  // namespace dunmora
