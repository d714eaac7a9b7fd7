#pragma once

#include "platform/Alert.h"
#include "text/Counted.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

class ContactsParser;
enum class GroupWarning;

// The sentences of a review, in the same words in every program. Each program decides how they
// write numbers.

/// Shown instead of a search when no match field is chosen.
inline constexpr auto kNoMatchField = "You should choose at least one field as match condition!";

/// Shown instead of a deletion when nobody is checked.
inline constexpr auto kNobodyChecked = "No contact checked to be deleted!";

/// Shown when there is not enough memory to read, search or change the address book with this name;
/// the name is empty when it is not known.
std::string notEnoughMemoryText(std::string_view book);

/// The question before a deletion; its alternate button cancels.
AlertContent deletionQuestion();

/// How many rows there are, of how many people, in digits alone: "7 duplicates of 120".
std::string totalText(const ContactsParser& engine);

/// A warning about this many people, such as "1 person would lose every copy"; no full stop.
std::string warningText(GroupWarning warning, std::size_t people, NumberText number = plainNumber);

/// The same about this many checked copies that hold something no kept copy has
/// (`UniqueProperties`): "2 copies hold something unique".
std::string uniqueText(std::size_t copies, NumberText number = plainNumber);

/// A warning about one row that holds something unique, as a full sentence.
inline constexpr std::string_view kOnlyHere = "Something in this copy is in no copy that is kept.";

/// A warning about one row of a group, as a full sentence.
std::string_view rowText(GroupWarning warning);

/// The result of restoring the user's check marks after another search: "12 check marks kept, 3
/// not: their groups have changed."
std::string keptMarksText(std::size_t kept, std::size_t lost, NumberText number = plainNumber);

/// The question before this many changes of check marks are lost to another address book; its
/// alternate button cancels.
AlertContent lostMarksQuestion(std::size_t changed, NumberText number = plainNumber);

/// What a command has done to the check marks: "Checked 3 people and unchecked 1."
std::string markedText(std::size_t checked, std::size_t unchecked, NumberText number = plainNumber);

}  // namespace dunmora
