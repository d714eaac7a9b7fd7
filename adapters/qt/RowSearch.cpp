#include "adapters/qt/RowSearch.h"

#include <chrono>
#include <utility>

namespace dunmora {

namespace {

/// Half of what a screen takes to show a picture.
constexpr std::chrono::milliseconds kTurn{8};
/// So many rows take far less than a turn.
constexpr std::size_t kRowsBetweenLooksAtTheClock = 64;

}  // namespace

RowSearch::RowSearch(const TableModel& model, Found found) : model_(model), found_(std::move(found))
{
    turn_.setInterval(0);
    QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { proceed(Until::NextTurn); });
}

void RowSearch::start(RowFilter filter)
{
    searchesLastRows_ = lastFilter_ && filter.narrows(*lastFilter_);
    filter_ = std::move(filter);
    rows_.clear();
    position_ = 0;
    proceed(Until::NextTurn);
}

void RowSearch::finish()
{
    if (isRunning()) {
        proceed(Until::TheEnd);
    }
}

void RowSearch::reset()
{
    turn_.stop();
    filter_.reset();
    lastFilter_.reset();
    lastRows_.clear();
}

void RowSearch::proceed(Until until)
{
    const auto count = searchesLastRows_ ? lastRows_.size() : model_.sourceRowCount();
    const auto end = std::chrono::steady_clock::now() + kTurn;
    while (position_ < count) {
        const auto row =
            searchesLastRows_ ? lastRows_[position_] : static_cast<std::uint32_t>(position_);
        if (model_.matches(row, *filter_)) {
            rows_.push_back(row);
        }
        ++position_;
        if (until == Until::NextTurn && position_ % kRowsBetweenLooksAtTheClock == 0 &&
            std::chrono::steady_clock::now() >= end) {
            turn_.start();
            return;
        }
    }
    turn_.stop();
    lastFilter_ = std::exchange(filter_, std::nullopt);
    lastRows_ = rows_;
    found_(std::exchange(rows_, {}));
}

}  // namespace dunmora
