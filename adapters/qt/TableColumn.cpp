#include "adapters/qt/TableColumn.h"

#include <QStringList>
#include <QTableView>
#include <QVariant>

#include <algorithm>
#include <array>
#include <string_view>

namespace dunmora {

namespace {

using namespace std::string_view_literals;

constexpr auto kCheck = "check"sv;
constexpr std::array kNames{"fname"sv, "lname"sv};
constexpr std::array kPhones{"home"sv, "work"sv, "mobile"sv};

bool isOneOf(std::string_view identifier, const auto& identifiers)
{
    return std::find(identifiers.begin(), identifiers.end(), identifier) != identifiers.end();
}

TableColumn column(std::string identifier, const QString& title)
{
    TableColumn column;
    column.title = title;
    column.isCheckMark = identifier == kCheck;
    if (isOneOf(identifier, kNames)) {
        column.kind = RowFilter::Cell::Kind::Name;
    } else if (isOneOf(identifier, kPhones)) {
        column.kind = RowFilter::Cell::Kind::Phone;
    }
    column.identifier = std::move(identifier);
    return column;
}

}  // namespace

std::vector<TableColumn> columnsOf(const QTableView& table)
{
    const auto identifiers = table.property("columnIdentifiers").toStringList();
    const auto titles = table.property("columnTitles").toStringList();
    std::vector<TableColumn> columns;
    for (qsizetype i = 0; i < identifiers.size(); ++i) {
        columns.push_back(column(identifiers[i].toStdString(), titles.value(i)));
    }
    return columns;
}

}  // namespace dunmora
