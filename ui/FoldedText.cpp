#include "ui/FoldedText.h"

#include "platform/TextFolding.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <iterator>

namespace dunmora {

void appendFolded(std::string& out, std::string_view text, const TextFolding& folding)
{
    if (isPlainAscii(text)) {
        std::transform(text.begin(), text.end(), std::back_inserter(out), toLowerAscii);
    } else {
        out += folding.folded(windowText(text));
    }
}

}  // namespace dunmora
