#include "review/ReviewTexts.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"
#include "text/Counted.h"
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

std::string warningText(GroupWarning warning, std::size_t people)
{
    return warning == GroupWarning::LosesEveryCopy
               ? countOfPeople(people) + " would lose every copy"
               : counted(people, "person shares only empty fields",
                         "people share only empty fields");
}

std::string uniqueText(std::size_t copies)
{
    return counted(copies, "copy holds something unique", "copies hold something unique");
}

std::string_view rowText(GroupWarning warning)
{
    return warning == GroupWarning::LosesEveryCopy
               ? "Every copy of this person is checked: none would be left."
               : "The fields compared are empty in these cards: they may be different people.";
}

std::string keptMarksText(std::size_t kept, std::size_t lost)
{
    constexpr auto kReason = ": their groups have changed.";
    const auto marks = [](std::size_t count) {
        return counted(count, "check mark", "check marks");
    };
    if (kept == 0) {
        return marks(lost) + " not kept" + kReason;
    }
    return marks(kept) + " kept" +
           (lost == 0 ? "." : ", " + std::to_string(lost) + " not" + kReason);
}

AlertContent lostMarksQuestion(std::size_t changed)
{
    return {"Open another address book?",
            "You have changed " + counted(changed, "check mark", "check marks") +
                " in this one. The changes will be lost.",
            "Open", "Cancel"};
}

std::string markedText(std::size_t checked, std::size_t unchecked)
{
    if (checked == 0 && unchecked == 0) {
        return "No check mark has changed.";
    }
    if (checked == 0) {
        return "Unchecked " + countOfPeople(unchecked) + ".";
    }
    return "Checked " + countOfPeople(checked) +
           (unchecked == 0 ? "." : " and unchecked " + std::to_string(unchecked) + ".");
}

}  // namespace dunmora
