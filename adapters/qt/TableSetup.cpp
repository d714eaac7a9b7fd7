#include "adapters/qt/TableSetup.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QTableView>

namespace dunmora {

void setUpTable(QTableView& table)
{
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setTabKeyNavigation(false);
    table.setDragDropMode(QAbstractItemView::NoDragDrop);
    table.setSortingEnabled(false);
    table.setShowGrid(false);
    table.setWordWrap(false);
    table.setTextElideMode(Qt::ElideRight);
    table.setCornerButtonEnabled(false);
    table.setAlternatingRowColors(false);
    table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);

    auto& header = *table.horizontalHeader();
    header.setSectionsClickable(false);
    header.setSectionsMovable(false);
    header.setHighlightSections(false);
    header.setStretchLastSection(false);
    header.setCascadingSectionResizes(false);
    header.setSectionResizeMode(QHeaderView::Interactive);
    // A double click on a header's edge measures the rows in view instead of a thousand.
    header.setResizeContentsPrecision(0);
    // To draw the titles, a header asks for every row whether it is selected, in every column. Its
    // own selection stays empty; without highlighted sections that looks the same.
    header.setSelectionModel(new QItemSelectionModel(table.model(), &header));

    auto& rows = *table.verticalHeader();
    rows.hide();
    rows.setSectionResizeMode(QHeaderView::Fixed);
}

void setTableMetrics(QTableView& table, int rowHeight, int textMargins)
{
    auto& rows = *table.verticalHeader();
    rows.setMinimumSectionSize(rowHeight);
    rows.setMaximumSectionSize(rowHeight);
    rows.setDefaultSectionSize(rowHeight);
    table.horizontalHeader()->setMinimumSectionSize(
        2 * (table.fontMetrics().averageCharWidth() + textMargins));
}

}  // namespace dunmora
