#include "ui/LookFilter.h"

#include "review/GroupWarnings.h"

#include <algorithm>
#include <utility>

namespace dunmora {

LookFilter::LookFilter(const GroupWarnings& groups, std::size_t rows,
                       const std::function<bool(std::size_t row)>& isUnique,
                       std::unique_ptr<RowFilter> typed)
    : groups_(groups), typed_(std::move(typed))
{
    for (std::size_t row = 0; row < rows; ++row) {
        const auto group = groups.groupOfRow(row);
        if (!group) {
            continue;
        }
        needsLook_.resize(std::max(needsLook_.size(), *group + 1));
        if (groups.hasWarning(row, GroupWarning::LosesEveryCopy) ||
            groups.hasWarning(row, GroupWarning::SharesOnlyEmptyFields) || isUnique(row)) {
            needsLook_[*group] = true;
        }
    }
}

bool LookFilter::matches(std::size_t row)
{
    const auto group = groups_.groupOfRow(row);
    return group && *group < needsLook_.size() && needsLook_[*group] &&
           (typed_ == nullptr || typed_->matches(row));
}

bool LookFilter::narrows(std::string_view /*earlier*/) const
{
    return false;
}

}  // namespace dunmora
