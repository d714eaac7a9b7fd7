#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace dunmora {

class ContactsParser;

/// The steps in which check marks of the review's rows were changed, for undo and redo. It only
/// changes marks, never the address book.
///
/// Thread: the main thread, while no job runs. Errors: none.
class MarkHistory final {
public:
    /// How many rows all steps may have together; the oldest steps are forgotten first. By default
    /// they take 64 megabytes.
    static constexpr std::size_t kMaxRows = 16'000'000;

    explicit MarkHistory(std::size_t maxRows = kMaxRows) : maxRows_(maxRows) {}

    /// Forgets all steps. To be called whenever a job changes the rows.
    void clear();

    /// Adds one step, whatever it touched: the marks of these rows have just been toggled, each
    /// once. The steps that were undone are forgotten. Without rows nothing happens.
    void add(std::span<const std::size_t> rows);

    bool canUndo() const { return done_ > 0; }
    bool canRedo() const { return done_ < steps_.size(); }

    /// Reverts the last step, or repeats the one that was undone last. Returns the rows whose marks
    /// have changed; none when there is no such step.
    std::vector<std::size_t> undo(ContactsParser& engine);
    std::vector<std::size_t> redo(ContactsParser& engine);

private:
    /// The rows of a step. Toggling them again reverts it.
    using Step = std::vector<std::uint32_t>;

    void forgetLastStep();

    std::size_t maxRows_;
    std::deque<Step> steps_;
    /// How many of the steps are done; the others have been undone.
    std::size_t done_ = 0;
    /// The rows in all steps.
    std::size_t rows_ = 0;
};

}  // namespace dunmora
