#include "adapters/qt/RowSearch.h"

#include <chrono>
#include <utility>

namespace dunmora {

namespace {

/// Half the time between two frames of a screen.
constexpr std::chrono::milliseconds kTurn{8};
/// Takes far less than a turn.
constexpr std::size_t kRowsPerTimeCheck = 64;

}  // namespace

RowSearch::RowSearch(const ShownRows& rows, Found found) : rows_(rows), found_(std::move(found))
{
    turn_.setInterval(0);
    QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { proceed(Until::NextTurn); });
}

void RowSearch::start(const QString& typed, std::unique_ptr<RowFilter> filter)
{
    searchesLastMatches_ = !lastTyped_.empty() && filter->narrows(lastTyped_);
    typed_ = typed.toStdString();
    filter_ = std::move(filter);
    matches_.clear();
    position_ = 0;
    proceed(Until::NextTurn);
}

void RowSearch::finish()
{
    if (isRunning()) {
        proceed(Until::End);
    }
}

void RowSearch::reset()
{
    turn_.stop();
    filter_.reset();
    lastTyped_.clear();
    lastMatches_.clear();
}

void RowSearch::proceed(Until until)
{
    const auto count = searchesLastMatches_ ? lastMatches_.size() : rows_.sourceRowCount();
    const auto end = std::chrono::steady_clock::now() + kTurn;
    while (position_ < count) {
        const auto row =
            searchesLastMatches_ ? lastMatches_[position_] : static_cast<std::uint32_t>(position_);
        if (filter_->matches(row)) {
            matches_.push_back(row);
        }
        ++position_;
        if (until == Until::NextTurn && position_ % kRowsPerTimeCheck == 0 &&
            std::chrono::steady_clock::now() >= end) {
            turn_.start();
            return;
        }
    }
    turn_.stop();
    filter_.reset();
    lastTyped_ = std::move(typed_);
    lastMatches_ = std::exchange(matches_, {});
    found_(lastMatches_);
}

}  // namespace dunmora
