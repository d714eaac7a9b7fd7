#include "programs/dunmora-cli/ProgramBundle.h"

namespace dunmora {

std::optional<std::string> ProgramBundle::objectForInfoDictionaryKey(std::string_view key) const
{
    return key == "CFBundleVersion" ? std::optional<std::string>(DUNMORA_VERSION) : std::nullopt;
}

}  // namespace dunmora
