#include "programs/dunmora-cli/NearestName.h"

#include "text/Ascii.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace dunmora {

namespace {

std::string_view withoutDashes(std::string_view name)
{
    name.remove_prefix(std::min(name.find_first_not_of('-'), name.size()));
    return name;
}

bool areEqual(char a, char b)
{
    return toLowerAscii(a) == toLowerAscii(b);
}

/// The number of letters to be changed, added, left out or swapped with their neighbour.
std::size_t distance(std::string_view a, std::string_view b)
{
    // The distances of every beginning of `b` from three beginnings of `a`, the longest one last.
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> current(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        current[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before.swap(last);
        last.swap(current);
        current[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            current[j] = std::min({last[j] + 1, current[j - 1] + 1,
                                   last[j - 1] + (areEqual(a[i - 1], b[j - 1]) ? 0U : 1U)});
            if (i > 1 && j > 1 && areEqual(a[i - 1], b[j - 2]) && areEqual(a[i - 2], b[j - 1])) {
                current[j] = std::min(current[j], before[j - 2] + 1);
            }
        }
    }
    return current[b.size()];
}

}  // namespace

std::string_view nearestName(std::string_view typed, std::span<const std::string> names)
{
    // A third of a name is no slip any more. It also bounds the work for a long argument.
    constexpr std::size_t kLettersPerSlip = 3;
    typed = withoutDashes(typed);
    std::string_view nearest;
    auto least = std::numeric_limits<std::size_t>::max();
    for (const auto& candidate : names) {
        const auto name = withoutDashes(candidate);
        const auto most = std::max<std::size_t>(name.size() / kLettersPerSlip, 1);
        if (typed.size() > name.size() + most) {
            continue;
        }
        const auto count = distance(typed, name);
        if (count <= most && count < std::min(least, name.size())) {
            nearest = candidate;
            least = count;
        }
    }
    return nearest;
}

}  // namespace dunmora
