#pragma once

class QTableView;

namespace dunmora {

/// Gives the widget the fixed behaviour of our tables: whole rows are selected, nothing is edited,
/// sorted or dragged, and columns are resized but not moved. Call it once the widget has its model.
void setUpTable(QTableView& table);

/// Gives every row the same height, and the columns a minimum width for their margins.
void setTableMetrics(QTableView& table, int rowHeight, int textMargins);

}  // namespace dunmora
