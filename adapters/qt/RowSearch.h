#pragma once

#include "adapters/qt/ShownRows.h"
#include "adapters/qt/SlicedLoop.h"
#include "platform/TableView.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace dunmora {

/// Finds the rows that match a filter, a few milliseconds at a time, so that the user can keep
/// typing while a big table is searched. A search that is replaced by a new one reports nothing.
///
/// Thread: the main thread. Errors: none.
class RowSearch final {
public:
    using Found = std::function<void(const ShownRows::SourceRows& rows)>;

    /// `found` is called once for each search that finishes, from within a call below or from the
    /// event loop. The table's rows must outlive this.
    RowSearch(const ShownRows& rows, Found found);

    /// Searches all rows, or only those that the last finished search found if no other can match.
    /// `filter` is the one for `typed`.
    void start(const QString& typed, std::unique_ptr<RowFilter> filter);
    /// Finishes the running search now, if there is one.
    void finish();
    /// Cancels the running search and forgets the last one: the rows have changed, or must not be
    /// asked about.
    void reset();

private:
    void test(std::size_t index);
    void completed();

    const ShownRows& rows_;
    Found found_;
    /// The running search.
    std::string typed_;
    std::unique_ptr<RowFilter> filter_;
    ShownRows::SourceRows matches_;
    bool searchesLastMatches_ = false;
    /// The last finished search. Empty texts have no filter, so an empty one means that there is
    /// none.
    std::string lastTyped_;
    ShownRows::SourceRows lastMatches_;
    SlicedLoop loop_;
};

}  // namespace dunmora
