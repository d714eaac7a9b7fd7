#pragma once

#include "platform/NumberFormat.h"

namespace dunmora::test {

/// Groups three digits, with a quotation mark that no sentence has: "12'345".
class FakeNumberFormat final : public NumberFormat {
public:
    std::string grouped(std::size_t number) const override;
};

}  // namespace dunmora::test
