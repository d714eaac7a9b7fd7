#pragma once

#include "adapters/qt/DrawnRow.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <unordered_map>

namespace dunmora {

class RowReader;

/// Caches the rows that a table has drawn, so that each is read once per frame and stays on the
/// screen while the data source may not be asked. Rows are numbered as in the data source.
///
/// Thread: the main thread. Errors: none.
class DrawnRows final {
public:
    /// `reader` must outlive this.
    explicit DrawnRows(const RowReader& reader) : reader_(reader) {}

    void clear();
    /// Begins a new frame, for which each row is read again.
    void beginFrame() { ++frame_; }
    /// Reads the check marks and styles of all rows, so that they are right in the next frames,
    /// which must not ask. Takes too long to do after each edit.
    void refreshMarks();

    /// Returns the row as it is in the current frame; null for a row that is not cached while the
    /// data source may not be asked. `above` is the row shown above it, if any.
    const DrawnRow* find(std::size_t row, std::optional<std::size_t> above);
    /// Does the same, but reads the row again even within a frame.
    const DrawnRow* findFresh(std::size_t row, std::optional<std::size_t> above);
    /// Reads the row, which is not cached. It begins no group.
    DrawnRow read(std::size_t row) const;

private:
    DrawnRow& added(std::size_t row);
    void readMarks(std::size_t row, DrawnRow& drawn) const;
    void readTexts(std::size_t row, DrawnRow& drawn) const;
    std::size_t groupOf(std::size_t row) const;

    const RowReader& reader_;
    std::uint64_t frame_ = 1;
    std::unordered_map<std::size_t, DrawnRow> rows_;
    /// The keys of `rows_` in the order in which they were added.
    std::deque<std::size_t> order_;
};

}  // namespace dunmora
