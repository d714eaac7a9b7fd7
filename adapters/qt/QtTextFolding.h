#pragma once

#include "platform/TextFolding.h"

namespace dunmora {

/// Folds text with Qt's Unicode tables.
class QtTextFolding final : public TextFolding {
public:
    std::string folded(std::string_view utf8) const override;
    std::string digits(std::string_view utf8) const override;
};

}  // namespace dunmora
