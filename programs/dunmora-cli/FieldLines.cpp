#include "programs/dunmora-cli/FieldLines.h"

#include "programs/dunmora-cli/TableLayout.h"
#include "programs/dunmora-cli/TerminalText.h"

#include <algorithm>

namespace dunmora {

void FieldLines::add(std::string_view title, std::string_view value, Break breaks,
                     std::string_view begin, std::string_view end)
{
    if (!value.empty()) {
        fields_.push_back({title, value, breaks, begin, end});
    }
}

void FieldLines::appendValue(std::string& out, const Field& field, std::string_view text)
{
    out += field.begin;
    out += text;
    out += field.end;
    TableLayout::endLine(out);
}

void FieldLines::append(std::string& out, std::string_view mark) const
{
    std::size_t titleWidth = 0;
    for (const auto& field : fields_) {
        titleWidth = std::max(titleWidth, displayWidth(field.title));
    }
    titleWidth += TableLayout::kGap.size();
    // A terminal of a few columns gets lines that are too long.
    constexpr std::size_t kLeast = 8;
    const auto taken = margin_.size() + titleWidth;
    const auto room = width_ < taken + kLeast ? kLeast : width_ - taken;
    for (const auto& field : fields_) {
        out += mark;
        mark = margin_;
        out += field.title;
        auto rest = field.value;
        if (field.breaks == Break::Never && displayWidth(rest) > room) {
            out += '\n';
            out += margin_;
            appendValue(out, field, rest);
            continue;
        }
        out.append(titleWidth - displayWidth(field.title), ' ');
        appendValue(out, field, takeLine(rest, room));
        while (!rest.empty()) {
            out += margin_;
            out.append(titleWidth, ' ');
            appendValue(out, field, takeLine(rest, room));
        }
    }
}

}  // namespace dunmora
