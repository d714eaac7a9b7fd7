#include "ui/NamePrefix.h"

#include "platform/TextFolding.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"
#include "ui/FoldedText.h"

#include <algorithm>

namespace dunmora {

NamePrefix::NamePrefix(std::string_view typed, const TextFolding& folding) : folding_(folding)
{
    appendFolded(folded_, typed, folding);
    isAscii_ = isPlainAscii(folded_);
}

bool NamePrefix::begins(std::string_view name) const
{
    const auto beginning = name.substr(0, folded_.size());
    if (isAscii_ && isPlainAscii(beginning)) {
        return equalsIgnoringCase(beginning, folded_);
    }
    // Folding may change the number of letters, but nobody types more of them than a cell shows.
    std::string folded;
    appendFolded(folded, shownPart(name), folding_);
    return folded.starts_with(folded_);
}

}  // namespace dunmora
