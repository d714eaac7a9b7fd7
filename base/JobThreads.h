#pragma once

#include <string_view>

namespace dunmora {

/// The names of the threads on which the jobs run; each is the name of its thread body.
inline constexpr std::string_view kThreadLoadContacts = "LoadContacts";
inline constexpr std::string_view kThreadFindDuplicates = "FindDuplicates";
inline constexpr std::string_view kThreadDeleteCheckedContacts = "DeleteCheckedContacts";
inline constexpr std::string_view kThreadUndoDelete = "UndoDelete";

}  // namespace dunmora
