#pragma once

#include "adapters/qt/RowFilter.h"
#include "adapters/qt/TableModel.h"

#include <QTimer>

#include <functional>
#include <optional>

namespace dunmora {

/// Looks for the rows that match a filter, a few milliseconds at a time, so that the user types on
/// while it searches a big table. A search that a new one overtakes is never reported.
///
/// Thread: the main thread. Errors: none.
class RowSearch final {
public:
    using Found = std::function<void(TableModel::SourceRows rows)>;

    /// `found` is called once for each search that comes to its end, from within any call below or
    /// from the event loop. The model must outlive this.
    RowSearch(const TableModel& model, Found found);

    /// Searches all rows, or only those that the last finished search found if no other can match.
    void start(RowFilter filter);
    /// Goes on until the end of the search, if one runs.
    void finish();
    bool isRunning() const { return filter_.has_value(); }
    /// Forgets the search that runs and what was found before: the rows are others now, or may not
    /// be asked for.
    void reset();

private:
    enum class Until { NextTurn, TheEnd };

    void proceed(Until until);

    const TableModel& model_;
    Found found_;
    /// The search that runs.
    std::optional<RowFilter> filter_;
    TableModel::SourceRows rows_;
    std::size_t position_ = 0;
    /// The last finished search, and what it found.
    std::optional<RowFilter> lastFilter_;
    TableModel::SourceRows lastRows_;
    bool searchesLastRows_ = false;
    QTimer turn_;
};

}  // namespace dunmora
