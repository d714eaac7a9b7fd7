#include "programs/dunmora-cli/TableLayout.h"

#include "programs/dunmora-cli/TerminalText.h"

#include <algorithm>

namespace dunmora {

TableLayout::TableLayout(std::size_t columns, std::size_t widestColumn)
    : widestColumn_(widestColumn), widths_(columns)
{
}

void TableLayout::measure(std::size_t column, std::string_view cell)
{
    widths_[column] = std::max(widths_[column], std::min(displayWidth(cell), widestColumn_));
}

void TableLayout::appendCell(std::string& out, std::size_t column, std::string_view cell) const
{
    out += cell;
    if (column + 1 == widths_.size()) {
        return;
    }
    const auto taken = displayWidth(cell);
    out.append(taken < widths_[column] ? widths_[column] - taken : 0, ' ');
    out += kGap;
}

void TableLayout::endLine(std::string& out)
{
    while (out.ends_with(' ')) {
        out.pop_back();
    }
    out += '\n';
}

}  // namespace dunmora
