#include "review/ReviewTexts.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"
#include "text/DisplayText.h"

namespace dunmora {

std::string notEnoughMemoryText(std::string_view book)
{
    return "There is not enough memory" + (book.empty() ? "" : " for " + quotedText(book)) +
           ". Close other programs and try again.";
}

AlertContent deletionQuestion()
{
    return {"Confirm to delete",
            "The checked contacts will be deleted from Address Book. \r\n"
            "Do you really want to continue?",
            "Okay", "Cancel"};
}

std::string totalText(const ContactsParser& engine)
{
    return std::to_string(engine.duplicates().size()) + " duplicates of " +
           std::to_string(engine.contacts().size());
}

std::string warningText(GroupWarning warning, std::size_t people, NumberText number)
{
    return warning == GroupWarning::LosesEveryCopy
               ? countOfPeople(people, number) + " would lose every copy"
               : counted(people, "person shares only empty fields",
                         "people share only empty fields", number);
}

std::string uniqueText(std::size_t copies, NumberText number)
{
    return counted(copies, "copy holds something unique", "copies hold something unique", number);
}

std::string_view rowText(GroupWarning warning)
{
    return warning == GroupWarning::LosesEveryCopy
               ? "Every copy of this person is checked: none would be left."
               : "The fields compared are empty in these cards: they may be different people.";
}

std::string keptMarksText(std::size_t kept, std::size_t lost, NumberText number)
{
    constexpr auto kReason = ": their groups have changed.";
    const auto marks = [number](std::size_t count) {
        return counted(count, "check mark", "check marks", number);
    };
    if (kept == 0) {
        return marks(lost) + " not kept" + kReason;
    }
    return marks(kept) + " kept" + (lost == 0 ? "." : ", " + number(lost) + " not" + kReason);
}

AlertContent lostMarksQuestion(std::size_t changed, NumberText number)
{
    return {"Open another address book?",
            "You have changed " + counted(changed, "check mark", "check marks", number) +
                " in this one. The changes will be lost.",
            "Open", "Cancel"};
}

std::string markedText(std::size_t checked, std::size_t unchecked, NumberText number)
{
    if (checked == 0 && unchecked == 0) {
        return "No check mark has changed.";
    }
    if (checked == 0) {
        return "Unchecked " + countOfPeople(unchecked, number) + ".";
    }
    return "Checked " + countOfPeople(checked, number) +
           (unchecked == 0 ? "." : " and unchecked " + number(unchecked) + ".");
}

}  // namespace dunmora
