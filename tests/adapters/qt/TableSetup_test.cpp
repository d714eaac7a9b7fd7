#include "adapters/qt/TableSetup.h"

#include <gtest/gtest.h>

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QImage>
#include <QPixmap>
#include <QTableView>

namespace dunmora::test {

namespace {

constexpr int kRows = 1'000;

/// Blank rows that count how often the table asks whether it may select a cell.
class CountedCells final : public QAbstractTableModel {
public:
    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : kRows;
    }
    int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : 3;
    }
    QVariant data(const QModelIndex& /*index*/, int /*role*/) const override { return {}; }
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        ++questions;
        return QAbstractTableModel::flags(index);
    }

    mutable int questions = 0;
};

class TableSetupTest : public testing::Test {
protected:
    TableSetupTest()
    {
        table.setModel(&cells);
        setUpTable(table);
        table.resize(600, 400);
    }

    QImage titles() { return table.horizontalHeader()->grab().toImage(); }

    CountedCells cells;
    QTableView table;
};

TEST_F(TableSetupTest, DrawsTheTitlesWithoutAskingForTheRows)
{
    titles();
    table.selectAll();
    cells.questions = 0;

    titles();

    EXPECT_LT(cells.questions, kRows);
}

TEST_F(TableSetupTest, DrawsTheTitlesAlikeWhateverIsSelected)
{
    const auto before = titles();

    table.selectAll();
    EXPECT_EQ(titles(), before);

    table.selectRow(1);
    EXPECT_EQ(titles(), before);
}

}  // namespace

}  // namespace dunmora::test
