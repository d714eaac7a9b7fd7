#include "adapters/qt/ShownRows.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace dunmora {

void ShownRows::reset(std::size_t sourceRowCount)
{
    sourceRowCount_ = std::min(sourceRowCount, std::size_t{std::numeric_limits<int>::max()});
    showAll();
}

void ShownRows::showOnly(const SourceRows& found,
                         const std::function<RowRange(std::size_t sourceRow)>& rowsTogetherWith)
{
    SourceRows shown;
    shown.reserve(found.size());
    isCompanion_.clear();
    for (auto next = found.begin(); next != found.end();) {
        const auto range = rowsTogetherWith(*next);
        const auto end = std::min(range.first + range.size, sourceRowCount_);
        for (auto row = range.first; row < end; ++row) {
            const bool isFound = next != found.end() && *next == row;
            next += isFound ? 1 : 0;
            shown.push_back(static_cast<std::uint32_t>(row));
            isCompanion_.push_back(!isFound);
        }
    }
    companions_ = shown.size() - found.size();
    filtered_ = std::move(shown);
}

void ShownRows::showAll()
{
    filtered_.reset();
    isCompanion_.clear();
    companions_ = 0;
}

int ShownRows::count() const
{
    return static_cast<int>(filtered_ ? filtered_->size() : sourceRowCount_);
}

std::size_t ShownRows::foundCount() const
{
    return static_cast<std::size_t>(count()) - companions_;
}

bool ShownRows::isCompanion(int row) const
{
    return filtered_ && isCompanion_[static_cast<std::size_t>(row)];
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
