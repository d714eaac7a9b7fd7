#pragma once

#include "adapters/qt/SlicedLoop.h"

#include <QString>

#include <cstddef>
#include <vector>

namespace dunmora {

class TableModel;

/// Copies rows of a table to the clipboard, as lines of tab-separated text. Many rows take a few
/// turns of the event loop; the clipboard changes at the end.
///
/// Thread: the main thread. Errors: none.
class RowCopy final {
public:
    /// The model must outlive this.
    explicit RowCopy(const TableModel& model) : model_(model) {}

    /// Copies these rows of the data source, in this order, instead of those that are being copied.
    /// Does nothing when there are none.
    void start(std::vector<std::size_t> sourceRows);
    /// Copies the rest now: the rows will not be available any longer.
    void finish() { loop_.finish(); }
    /// Leaves the clipboard alone: the rows have changed.
    void cancel() { loop_.cancel(); }

private:
    const TableModel& model_;
    std::vector<std::size_t> sourceRows_;
    QString text_;
    SlicedLoop loop_;
};

}  // namespace dunmora
