#pragma once

#include "adapters/qt/QtTableView.h"
#include "tests/adapters/qt/CountedRows.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace dunmora::test {

/// Rows in a window with a table, its filter bar and a button, as an interface file lays them out.
class TableWindow {
public:
    /// Shows this many people, in groups of two.
    explicit TableWindow(std::size_t people = 0)
    {
        for (std::size_t i = 0; i < people; ++i) {
            add(i);
        }
        window.resize(1000, 500);
        table.setDataSource(&rows, &rows);
        table.reloadData();
        window.show();
        settle();
    }

    /// Person 0 is "First0 Last0" with the telephone number 555-0000, and so on.
    void add(std::size_t person)
    {
        const auto number = std::to_string(person);
        CountedRows::Row row;
        row.texts = {
            {"fname", "First" + number},
            {"lname", "Last" + number},
            {"nickname", ""},
            {"home",
             "555-" + std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number}};
        row.style.group = person / 2;
        rows.rows.push_back(row);
    }

    /// Processes all pending events, including drawing.
    static void settle()
    {
        for (int i = 0; i < 4; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    void draw() { drawn = widget.viewport()->grab().toImage(); }

    QModelIndex index(int row, int column) const { return widget.model()->index(row, column); }
    QString text(int row, int column) const { return index(row, column).data().toString(); }
    bool isChecked(int row) const
    {
        return index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }
    int rowCount() const { return widget.model()->rowCount(); }

    void select(int first, int last)
    {
        widget.selectionModel()->select(QItemSelection(index(first, 0), index(last, 0)),
                                        QItemSelectionModel::ClearAndSelect |
                                            QItemSelectionModel::Rows);
    }
    bool isSelected(int row) const
    {
        return widget.selectionModel()->isRowSelected(row, QModelIndex());
    }
    std::vector<int> selected() const
    {
        std::vector<int> found;
        for (int row = 0; row < rowCount(); ++row) {
            if (isSelected(row)) {
                found.push_back(row);
            }
        }
        return found;
    }

    /// The centre of the row's check box, which is at the left edge of its cell.
    QPoint checkBox(int row) const
    {
        const auto cell = widget.visualRect(index(row, 0));
        const int half =
            widget.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &widget) / 2;
        return {cell.left() + half + 2, cell.center().y()};
    }
    void click(QPoint position, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(widget.viewport(), Qt::LeftButton, modifiers, position);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&widget, key, modifiers);
    }
    void type(const QString& text)
    {
        line.setText(text);
        settle();
    }
    QWidget* focus() const { return window.focusWidget(); }
    QString countText() const
    {
        return bar.findChild<QLabel*>(QStringLiteral("tableContactsFilterCount"))->text();
    }

    /// What assistive technology reads of a cell.
    QAccessibleInterface& accessibleCell(int row, int column)
    {
        auto* accessible = QAccessible::queryAccessibleInterface(&widget);
        return *accessible->tableInterface()->cellAt(row, column);
    }
    QString accessibleName(int row, int column)
    {
        return accessibleCell(row, column).text(QAccessible::Name);
    }

    CountedRows rows;
    QWidget window;
    QTableView& widget = layOutTable(window);
    QLineEdit& line = layOutFilter(window);
    QWidget& bar = *line.parentWidget();
    QPushButton& button = layOutButton(window);
    QtTableView table{widget, &bar, &line};
    QImage drawn;

private:
    static QTableView& layOutTable(QWidget& window)
    {
        auto* layout = new QVBoxLayout(&window);
        auto* table = new QTableView(&window);
        layout->addWidget(table);
        return *table;
    }

    static QLineEdit& layOutFilter(QWidget& window)
    {
        auto* bar = new QWidget(&window);
        auto* line = new QLineEdit(bar);
        line->setObjectName(QStringLiteral("tableContactsFilter"));
        auto* layout = new QHBoxLayout(bar);
        layout->addWidget(line);
        window.layout()->addWidget(bar);
        return *line;
    }

    static QPushButton& layOutButton(QWidget& window)
    {
        auto* button = new QPushButton(&window);
        window.layout()->addWidget(button);
        return *button;
    }
};

}  // namespace dunmora::test
