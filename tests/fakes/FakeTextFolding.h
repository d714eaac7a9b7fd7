#pragma once

#include "platform/TextFolding.h"

namespace dunmora::test {

/// Knows the letters of ASCII and Latin-1, composed or not, and the digits of ASCII and Arabic.
class FakeTextFolding final : public TextFolding {
public:
    std::string folded(std::string_view utf8) const override;
    std::string digits(std::string_view utf8) const override;
};

}  // namespace dunmora::test
