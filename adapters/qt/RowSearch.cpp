#include "adapters/qt/RowSearch.h"

#include <utility>

namespace dunmora {

RowSearch::RowSearch(const ShownRows& rows, Found found) : rows_(rows), found_(std::move(found)) {}

void RowSearch::start(const QString& typed, std::unique_ptr<RowFilter> filter)
{
    searchesLastMatches_ = !lastTyped_.empty() && filter->narrows(lastTyped_);
    typed_ = typed.toStdString();
    filter_ = std::move(filter);
    matches_.clear();
    loop_.start(
        searchesLastMatches_ ? lastMatches_.size() : rows_.sourceRowCount(),
        [this](std::size_t index) { test(index); }, [this] { completed(); });
}

void RowSearch::finish()
{
    loop_.finish();
}

void RowSearch::reset()
{
    loop_.cancel();
    filter_.reset();
    lastTyped_.clear();
    lastMatches_.clear();
}

void RowSearch::test(std::size_t index)
{
    const auto row = searchesLastMatches_ ? lastMatches_[index] : static_cast<std::uint32_t>(index);
    if (filter_->matches(row)) {
        matches_.push_back(row);
    }
}

void RowSearch::completed()
{
    filter_.reset();
    lastTyped_ = std::move(typed_);
    lastMatches_ = std::exchange(matches_, {});
    found_(lastMatches_);
}

}  // namespace dunmora
