#pragma once

#include "adapters/qt/RowFilter.h"

#include <QString>

#include <string>
#include <vector>

class QTableView;

namespace dunmora {

/// A column of a table, as its interface file names it.
struct TableColumn {
    std::string identifier;
    QString title;
    bool isCheckMark = false;
    /// Whether a filter looks for names or telephone numbers in it.
    RowFilter::Cell::Kind kind = RowFilter::Cell::Kind::Text;
};

/// The columns that the table's properties `columnIdentifiers` and `columnTitles` tell.
std::vector<TableColumn> columnsOf(const QTableView& table);

}  // namespace dunmora
