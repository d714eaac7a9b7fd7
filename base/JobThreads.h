#pragma once

#include <string_view>

namespace dunmora {

/// The names of the threads on which the jobs run; each is that of its body.
inline constexpr std::string_view kThreadLoadContacts = "LoadContacts";
inline constexpr std::string_view kThreadFindDuplicates = "FindDuplicates";
inline constexpr std::string_view kThreadDeleteCheckedContacts = "DeleteCheckedContacts";

}  // namespace dunmora
