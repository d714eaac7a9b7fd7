#include "programs/dunmora-cli/ContactCells.h"

#include "programs/dunmora-cli/TimeText.h"
#include "review/SubstituteName.h"
#include "text/DisplayText.h"

namespace dunmora {

namespace {

/// The person's name when it replaces the blank first name.
std::string substituteFor(const ContactRecord& record, const ContactField& field,
                          const CardSource* cards)
{
    return field.key == kContactFirstName ? substituteName(record, cards) : std::string();
}

/// The cell's text: a view of the record or of `buffer`, which is overwritten.
std::string_view cellText(const ContactRecord& record, const ContactField& field,
                          const CardSource* cards, std::string& buffer)
{
    buffer.clear();
    appendDisplayText(buffer, substituteFor(record, field, cards));
    if (!buffer.empty()) {
        return buffer;
    }
    if (!field.isText()) {
        if (const auto time = record.objectForKey(field.key)) {
            appendLocalTime(buffer, std::get<std::chrono::sys_seconds>(*time));
        }
        return buffer;
    }
    const auto text = record.text(field.key);
    const auto shown = shownPart(text);
    const bool isCut = shown.size() < text.size();
    if (!isCut && isPlainAscii(text)) {
        return text;
    }
    appendDisplayText(buffer, shown);
    if (isCut) {
        buffer += kEllipsis;
    }
    return buffer;
}

}  // namespace

void ContactCells::read(const ContactRecord& record, const CardSource* cards)
{
    for (std::size_t i = 0; i < kTableColumns.size(); ++i) {
        texts[i] = cellText(record, *kTableColumns[i], cards, buffers_[i]);
    }
}

}  // namespace dunmora
