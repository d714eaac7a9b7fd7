#include "ui/ReadingNotesButton.h"

#include "platform/Alert.h"
#include "platform/Button.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "text/Counted.h"
#include "ui/GroupedNumber.h"

#include <string>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

/// Without a full stop; empty when there are no notes.
std::string summaryOf(const ReadingNotes& notes)
{
    if (notes.cardsSkipped > 0) {
        return counted(notes.cardsSkipped, "card was skipped", "cards were skipped", groupedNumber);
    }
    if (!notes.remarks.empty()) {
        return counted(notes.remarks.size(), "remark about the address book",
                       "remarks about the address book", groupedNumber);
    }
    return {};
}

/// What the button shows: a remark says more than that there is one.
std::string titleOf(const ReadingNotes& notes)
{
    return notes.remarks.size() == 1 ? notes.remarks.front() : summaryOf(notes);
}

std::string linesOf(const std::vector<std::string>& texts)
{
    std::string lines;
    for (const auto& text : texts) {
        lines += (lines.empty() ? "" : "\n") + text;
    }
    return lines;
}

}  // namespace

ReadingNotesButton::ReadingNotesButton(Interface& mainInterface)
    : btnNotes_(&mainInterface.button("btnNotes"))
{
    setNotes({});
}

void ReadingNotesButton::setNotes(ReadingNotes notes)
{
    notes_ = std::move(notes);
    const auto title = titleOf(notes_);
    if (!title.empty()) {
        btnNotes_->setTitle(title);
    }
    btnNotes_->setHidden(title.empty());
}

void ReadingNotesButton::showAlert() const
{
    const auto summary = summaryOf(notes_);
    if (!summary.empty()) {
        Platform::current().alert.runModal({summary, linesOf(notes_.remarks), "OK", std::nullopt});
    }
}

}  // namespace dunmora
