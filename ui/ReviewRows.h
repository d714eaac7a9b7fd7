#pragma once

#include "platform/TableView.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dunmora {

class ContactRecord;

// The rows of the review table, which are the engine's duplicates.
// Thread: the main thread, while the engine changes nothing. Errors: none.

/// The record in a row, or null for a row that does not exist or whose person is unknown.
ContactRecord* recordInRow(std::ptrdiff_t row);

/// The columns of the table; a column's identifier is a key of the contact record.
std::span<const TableColumn> reviewColumns();

/// The title of the column with this identifier.
std::string_view titleOfColumn(std::string_view identifier);

/// As `TableViewDelegate::leastText`: a typical number for a column by which the search compared,
/// which must be readable even if its first rows are empty.
std::string_view leastText(std::string_view column);

/// Which copy of its group a row is: "copy 2 of 4".
std::string copyText(std::size_t row, RowRange group);

/// What assistive technology reads of a row's check box; the warning and the copy may be empty.
/// `substitute` is what to call a person whose name fields are blank, if anything.
std::string accessibleText(const ContactRecord& contact, std::string_view warning,
                           std::string_view substitute = {}, std::string_view copy = {});

/// As `TableViewDelegate::accessibleCellText`: "Home: 555-0100".
std::string accessibleCellText(std::string_view title, std::optional<std::string_view> shown);

/// As `TableViewDelegate::countText`: "3 of 120 match".
std::string countText(std::size_t found, std::size_t all);

/// As `TableViewDelegate::rowFilter`, with a `ContactFilter`.
std::unique_ptr<RowFilter> reviewFilter(std::string_view typed);

/// As `TableViewDelegate::rowForTyping`: the next row in which a first or a last name begins with
/// the letters. The same letter typed again and again steps through the names that begin with it.
std::optional<std::size_t> rowForTyping(std::string_view typed, std::size_t first,
                                        const std::function<bool(std::size_t row)>& isShown);

}  // namespace dunmora
