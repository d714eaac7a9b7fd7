#pragma once

#include "platform/Button.h"
#include "platform/CheckBox.h"
#include "platform/DetailsView.h"
#include "platform/ProgressIndicator.h"
#include "platform/TableView.h"
#include "platform/TextField.h"
#include "platform/View.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

class CallLog;

/// A control that keeps its values and logs each call as "Interface.outlet call value".
template <typename Port>
class FakeControl : public Port {
public:
    FakeControl(std::string name, CallLog& log);

    void setHidden(bool hidden) override;

    bool isHidden = false;
    /// Called by `setHidden`, which is not logged.
    std::function<void(bool hidden)> onSetHidden = [](bool /*hidden*/) {};

protected:
    void note(const std::string& call);

private:
    std::string name_;
    CallLog& log_;
};

// Instantiated once, in FakeControls.cpp.
extern template class FakeControl<View>;
extern template class FakeControl<Button>;
extern template class FakeControl<CheckBox>;
extern template class FakeControl<TextField>;
extern template class FakeControl<ProgressIndicator>;
extern template class FakeControl<TableView>;
extern template class FakeControl<DetailsView>;

class FakeView final : public FakeControl<View> {
public:
    using FakeControl::FakeControl;
};

class FakeButton final : public FakeControl<Button> {
public:
    using FakeControl::FakeControl;

    void setTitle(const std::string& text) override;

    std::string title;
};

class FakeCheckBox final : public FakeControl<CheckBox> {
public:
    using FakeControl::FakeControl;

    CheckState state() const override;
    void setState(CheckState state) override;

    CheckState shown = CheckState::Mixed;
};

class FakeTextField final : public FakeControl<TextField> {
public:
    using FakeControl::FakeControl;

    void setNeedsDisplay() override;
    void setStringValue(std::string_view text) override;

    std::string stringValue;
};

class FakeProgressIndicator final : public FakeControl<ProgressIndicator> {
public:
    using FakeControl::FakeControl;

    void setNeedsDisplay() override;
    void setMinValue(double value) override;
    void setMaxValue(double value) override;
    void setDoubleValue(double value) override;
    void startAnimation() override;
    void stopAnimation() override;
};

/// A table that draws nothing; the test reads rows from the data source and edits them itself.
class FakeTableView final : public FakeControl<TableView> {
public:
    using FakeControl::FakeControl;

    void setNeedsDisplay() override;
    void setDataSource(TableViewDataSource* source, TableViewDelegate* rowDelegate) override;
    void setEnabled(bool enabled) override;
    void reloadData() override;
    std::optional<std::size_t> selectedRow() const override;
    void selectRow(std::size_t row) override;
    void editSelectedRows(std::string_view column, CheckState state) override;
    void editShownRows(std::string_view column, CheckState state) override;
    bool showsRow(std::size_t row) const override;
    void beginFiltering() override;
    void endFiltering() override;
    void refilter() override;

    TableViewDataSource* dataSource = nullptr;
    TableViewDelegate* delegate = nullptr;
    bool isEnabled = true;
    /// The number of rows at the last `reloadData`.
    std::size_t rows = 0;
    std::optional<std::size_t> selected;
    /// The rows that a filter hides.
    std::set<std::size_t> hiddenRows;
};

class FakeDetailsView final : public FakeControl<DetailsView> {
public:
    using FakeControl::FakeControl;

    void setLines(std::vector<DetailsLine> newLines) override;

    std::vector<DetailsLine> lines;
};

}  // namespace dunmora::test
