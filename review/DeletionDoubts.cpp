#include "review/DeletionDoubts.h"

#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"
#include "review/GroupMarks.h"
#include "review/GroupWarnings.h"
#include "review/PersonName.h"
#include "text/DisplayText.h"

#include <algorithm>

namespace dunmora {

namespace {

constexpr std::size_t kMaxNames = 5;

std::string lossText(const DeletionDoubts& doubts, NumberText number)
{
    return countOfPeople(doubts.lost, number) + " would be deleted completely";
}

std::string emptyFieldsText(const DeletionDoubts& doubts, NumberText number)
{
    return counted(doubts.sharingOnlyEmptyFields,
                   "person matches only because their fields are empty",
                   "people match only because their fields are empty", number);
}

/// "Ann Lee, Ben Lee and 3 more."
std::string enumerated(const DeletionDoubts& doubts, NumberText number)
{
    std::string text;
    for (const auto& name : doubts.lostNames) {
        text += (text.empty() ? "" : ", ") + name;
    }
    if (doubts.lost > doubts.lostNames.size()) {
        text += " and " + number(doubts.lost - doubts.lostNames.size()) + " more";
    }
    return text + ".";
}

}  // namespace

DeletionDoubts deletionDoubts(const ContactsParser& engine, const GroupWarnings& warnings,
                              const CardSource* cards)
{
    const auto lost = lastCopyUids(engine, warnings);
    DeletionDoubts doubts{lost.size(), {}, warnings.checkedPeopleWhoShareOnlyEmptyFields()};
    for (std::size_t i = 0; i < std::min(lost.size(), kMaxNames); ++i) {
        const auto name = personName(*engine.contacts().find(lost[i]), cards);
        doubts.lostNames.push_back(name.empty() ? "no name" : windowText(name));
    }
    return doubts;
}

AlertContent doubtQuestion(const DeletionDoubts& doubts, NumberText number)
{
    AlertContent content{"", "", "Leave Them Out", "Cancel", "Delete Them Too"};
    if (doubts.lost == 0) {
        content.messageText = emptyFieldsText(doubts, number);
        content.informativeText = "They may be different people. Leave Them Out unchecks them.";
        return content;
    }
    content.messageText = lossText(doubts, number);
    content.informativeText = enumerated(doubts, number) + "\n\n";
    if (doubts.sharingOnlyEmptyFields == 0) {
        content.informativeText += "Leave Them Out keeps one copy of each person.";
    } else {
        content.informativeText += emptyFieldsText(doubts, number) +
                                   ".\n\nLeave Them Out keeps one copy of each person and unchecks "
                                   "those who match only because their fields are empty.";
    }
    return content;
}

std::vector<std::size_t> leaveDoubtsOut(ContactsParser& engine, GroupWarnings& warnings)
{
    auto rows = uncheckSharingOnlyEmptyFields(engine, warnings);
    warnings.rowsEdited(engine, rows);
    const auto kept = keepOneOfEach(engine, warnings);
    rows.insert(rows.end(), kept.begin(), kept.end());
    std::sort(rows.begin(), rows.end());
    uncheckWithoutDuplicates(engine);
    warnings.update(engine);
    return rows;
}

}  // namespace dunmora
