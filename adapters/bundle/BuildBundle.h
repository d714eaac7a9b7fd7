#pragma once

#include "platform/Bundle.h"

namespace dunmora {

/// The version, the id and, in a build with an update service, its host, compiled into the program.
class BuildBundle final : public Bundle {
public:
    std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const override;
};

}  // namespace dunmora
