#include "tests/fakes/FakeControls.h"

#include "tests/fakes/CallLog.h"

#include <utility>

namespace dunmora::test {

template <typename Port>
FakeControl<Port>::FakeControl(std::string name, CallLog& log) : name_(std::move(name)), log_(log)
{
}

template <typename Port>
void FakeControl<Port>::setHidden(bool hidden)
{
    isHidden = hidden;
    onSetHidden(hidden);
}

template <typename Port>
void FakeControl<Port>::note(const std::string& call)
{
    log_.add(name_ + " " + call);
}

template class FakeControl<View>;
template class FakeControl<Button>;
template class FakeControl<CheckBox>;
template class FakeControl<TextField>;
template class FakeControl<ProgressIndicator>;
template class FakeControl<TableView>;
template class FakeControl<DetailsView>;

void FakeButton::setTitle(const std::string& text)
{
    title = text;
}

CheckState FakeCheckBox::state() const
{
    return shown;
}

void FakeCheckBox::setState(CheckState state)
{
    shown = state;
    note("setState " + std::to_string(static_cast<int>(state)));
}

void FakeTextField::setNeedsDisplay()
{
    note("setNeedsDisplay");
}

void FakeTextField::setStringValue(std::string_view text)
{
    stringValue = text;
    note("setStringValue " + stringValue);
}

void FakeProgressIndicator::setNeedsDisplay()
{
    note("setNeedsDisplay");
}

void FakeProgressIndicator::setMinValue(double value)
{
    note("setMinValue " + std::to_string(value));
}

void FakeProgressIndicator::setMaxValue(double value)
{
    note("setMaxValue " + std::to_string(value));
}

void FakeProgressIndicator::setDoubleValue(double value)
{
    note("setDoubleValue " + std::to_string(value));
}

void FakeProgressIndicator::startAnimation()
{
    note("startAnimation");
}

void FakeProgressIndicator::stopAnimation()
{
    note("stopAnimation");
}

void FakeDetailsView::setLines(std::vector<DetailsLine> newLines)
{
    lines = std::move(newLines);
}

void FakeTableView::setNeedsDisplay()
{
    note("setNeedsDisplay");
}

void FakeTableView::setDataSource(TableViewDataSource* source, TableViewDelegate* rowDelegate)
{
    dataSource = source;
    delegate = rowDelegate;
}

void FakeTableView::setEnabled(bool enabled)
{
    isEnabled = enabled;
    note(enabled ? "setEnabled true" : "setEnabled false");
}

void FakeTableView::reloadData()
{
    rows = dataSource == nullptr ? 0 : dataSource->numberOfRows();
    note("reloadData");
}

std::optional<std::size_t> FakeTableView::selectedRow() const
{
    return selected;
}

void FakeTableView::selectRow(std::size_t row)
{
    selected = row;
    note("selectRow " + std::to_string(row));
}

void FakeTableView::editSelectedRows(std::string_view column, CheckState state)
{
    note("editSelectedRows " + std::string(column) + " " + std::to_string(static_cast<int>(state)));
}

void FakeTableView::editShownRows(std::string_view column, CheckState state)
{
    note("editShownRows " + std::string(column) + " " + std::to_string(static_cast<int>(state)));
}

bool FakeTableView::showsRow(std::size_t row) const
{
    return row < rows && !hiddenRows.contains(row);
}

void FakeTableView::beginFiltering()
{
    note("beginFiltering");
}

void FakeTableView::endFiltering()
{
    note("endFiltering");
}

void FakeTableView::refilter()
{
    note("refilter");
}

}  // namespace dunmora::test
