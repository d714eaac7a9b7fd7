#include "programs/dunmora-cli/ContactCells.h"

#include "engine/ContactRecord.h"
#include "programs/dunmora-cli/TerminalText.h"
#include "programs/dunmora-cli/TimeText.h"
#include "review/SubstituteName.h"
#include "text/DisplayText.h"

#include <algorithm>

namespace dunmora {

namespace {

/// Once a block of texts has this many bytes, it is full.
constexpr std::size_t kBlockSize = std::size_t{64} << 10U;

/// Appends the beginning of the text that a cell shows.
void appendShown(std::string& out, std::string_view text)
{
    const auto shown = shownPart(text);
    appendDisplayText(out, shown);
    if (shown.size() < text.size()) {
        out += kEllipsis;
    }
}

/// Appends the text of a cell that is not shown as it is in the record.
void appendCell(std::string& out, const ContactRecord& record, std::size_t column)
{
    const auto& field = *kTableColumns[column];
    if (field.isText()) {
        appendShown(out, record.textAt(kTextPlaces[column]));
    } else if (const auto time = record.objectForKey(field.key)) {
        appendLocalTime(out, std::get<std::chrono::sys_seconds>(*time));
    }
}

/// Whether the text is shown as it is.
bool isShownAsItIs(std::string_view text)
{
    return text.size() <= kMaxShownBytes && isPlainAscii(text);
}

}  // namespace

void ContactCells::add(const ContactRecord& record)
{
    const auto substitute = substituteName(record, cards_);
    KeptColumns kept = 0;
    for (std::size_t i = 0; i < kTableColumns.size(); ++i) {
        const auto& field = *kTableColumns[i];
        const bool isSubstituted = field.key == kContactFirstName && !substitute.empty();
        if (field.isText() && !isSubstituted) {
            const auto text = record.textAt(kTextPlaces[i]);
            if (isShownAsItIs(text)) {
                widest_[i] = std::max(widest_[i], text.size());
                continue;
            }
        }
        auto& block = blockForText();
        const auto begin = block.size();
        if (isSubstituted) {
            appendDisplayText(block, substitute);
        } else {
            appendCell(block, record, i);
        }
        const auto text = std::string_view(block).substr(begin);
        const auto width = displayWidth(text);
        widest_[i] = std::max(widest_[i], width);
        kept = static_cast<KeptColumns>(kept | 1U << i);
        cells_.push_back(
            {static_cast<std::uint32_t>(text.size()), static_cast<std::uint32_t>(width)});
    }
    kept_.push_back(kept);
}

ContactRow ContactCells::next(const ContactRecord& record)
{
    ContactRow row;
    const unsigned kept = kept_[nextPerson_++];
    for (std::size_t i = 0; i < row.size(); ++i) {
        if ((kept >> i & 1U) == 0) {
            const auto text = record.textAt(kTextPlaces[i]);
            row[i] = {text, text.size()};
            continue;
        }
        const auto cell = cells_.front();
        cells_.pop_front();
        if (nextText_ >= kBlockSize) {
            ++nextBlock_;
            nextText_ = 0;
        }
        row[i] = {std::string_view(blocks_[nextBlock_]).substr(nextText_, cell.size), cell.width};
        nextText_ += cell.size;
    }
    return row;
}

/// The block to which the next text is to be appended.
std::string& ContactCells::blockForText()
{
    if (blocks_.empty() || blocks_.back().size() >= kBlockSize) {
        // The last text of a block goes beyond its size.
        blocks_.emplace_back().reserve(kBlockSize + kMaxShownBytes);
    }
    return blocks_.back();
}

}  // namespace dunmora
