#include "adapters/qt/ShownRows.h"

#include <algorithm>
#include <limits>

namespace dunmora {

void ShownRows::reset(std::size_t sourceRowCount)
{
    sourceRowCount_ = std::min(sourceRowCount, std::size_t{std::numeric_limits<int>::max()});
    filtered_.reset();
}

int ShownRows::count() const
{
    return static_cast<int>(filtered_ ? filtered_->size() : sourceRowCount_);
}

std::size_t ShownRows::sourceRow(int row) const
{
    const auto index = static_cast<std::size_t>(row);
    return filtered_ ? (*filtered_)[index] : index;
}

std::optional<int> ShownRows::rowOf(std::size_t sourceRow) const
{
    const int row = firstRowFrom(sourceRow);
    const bool isShown = row < count() && this->sourceRow(row) == sourceRow;
    return isShown ? std::optional(row) : std::nullopt;
}

int ShownRows::firstRowFrom(std::size_t sourceRow) const
{
    if (!filtered_) {
        return static_cast<int>(std::min(sourceRow, sourceRowCount_));
    }
    const auto found = std::lower_bound(filtered_->begin(), filtered_->end(), sourceRow);
    return static_cast<int>(found - filtered_->begin());
}

}  // namespace dunmora
