#include "tests/fakes/FakeNumberFormat.h"

namespace dunmora::test {

std::string FakeNumberFormat::grouped(std::size_t number) const
{
    auto text = std::to_string(number);
    for (auto end = text.size(); end > 3; end -= 3) {
        text.insert(end - 3, 1, '\'');
    }
    return text;
}

}  // namespace dunmora::test
