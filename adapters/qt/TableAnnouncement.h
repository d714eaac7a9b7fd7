#pragma once

#include <cstddef>
#include <span>

class QTableView;

namespace dunmora {

class TableModel;

/// Notifies assistive technology that the check marks of these source rows, in ascending order,
/// have changed. Rows that are out of view are not announced.
///
/// Thread: the main thread. Errors: none.
void announceCheckMarks(QTableView& table, const TableModel& model,
                        std::span<const std::size_t> sourceRows);

}  // namespace dunmora
