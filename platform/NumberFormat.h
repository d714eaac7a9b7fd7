#pragma once

#include <cstddef>
#include <string>

namespace dunmora {

/// Writes numbers as the user's locale does.
///
/// Thread: any. Errors: none.
class NumberFormat {
public:
    virtual ~NumberFormat() = default;

    /// The number with its digits in groups, in UTF-8: "12,345".
    virtual std::string grouped(std::size_t number) const = 0;
};

}  // namespace dunmora
