#pragma once

#include "platform/TableView.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace dunmora {

class GroupWarnings;

/// Selects the rows of every group in which a row needs a look, as it was when the filter was
/// created: a group stays on the screen while the user works on it. A typed text narrows them.
///
/// Thread: the main thread. Errors: none.
class LookFilter final : public RowFilter {
public:
    /// `isUnique` is asked about each of the first `rows` rows in the constructor. `typed` is the
    /// filter for what the user typed; null when every row matches it.
    LookFilter(const GroupWarnings& groups, std::size_t rows,
               const std::function<bool(std::size_t row)>& isUnique,
               std::unique_ptr<RowFilter> typed);

    bool matches(std::size_t row) override;
    /// Never: other groups may need a look since.
    bool narrows(std::string_view earlier) const override;

private:
    const GroupWarnings& groups_;
    std::vector<bool> needsLook_;
    std::unique_ptr<RowFilter> typed_;
};

}  // namespace dunmora
