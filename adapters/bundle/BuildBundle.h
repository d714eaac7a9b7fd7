#pragma once

#include "platform/Bundle.h"

namespace dunmora {

/// What the build has written into the program about itself.
class BuildBundle final : public Bundle {
public:
    std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const override;
};

}  // namespace dunmora
