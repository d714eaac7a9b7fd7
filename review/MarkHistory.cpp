#include "review/MarkHistory.h"

#include "engine/ContactsParser.h"

namespace dunmora {

namespace {

std::vector<std::size_t> toggled(ContactsParser& engine, std::span<const std::uint32_t> step)
{
    std::vector<std::size_t> rows;
    rows.reserve(step.size());
    for (const auto row : step) {
        auto* const contact = engine.recordInRow(row);
        if (contact != nullptr) {
            contact->setObject(!contact->isChecked(), kContactCheck);
            rows.push_back(row);
        }
    }
    return rows;
}

}  // namespace

void MarkHistory::clear()
{
    steps_.clear();
    done_ = 0;
    rows_ = 0;
}

void MarkHistory::add(std::span<const std::size_t> rows)
{
    if (rows.empty()) {
        return;
    }
    while (canRedo()) {
        forgetLastStep();
    }
    steps_.emplace_back(rows.begin(), rows.end());
    rows_ += rows.size();
    while (rows_ > maxRows_ && steps_.size() > 1) {
        rows_ -= steps_.front().size();
        steps_.pop_front();
    }
    done_ = steps_.size();
}

std::vector<std::size_t> MarkHistory::undo(ContactsParser& engine)
{
    return canUndo() ? toggled(engine, steps_[--done_]) : std::vector<std::size_t>();
}

std::vector<std::size_t> MarkHistory::redo(ContactsParser& engine)
{
    return canRedo() ? toggled(engine, steps_[done_++]) : std::vector<std::size_t>();
}

void MarkHistory::forgetLastStep()
{
    rows_ -= steps_.back().size();
    steps_.pop_back();
}

}  // namespace dunmora
