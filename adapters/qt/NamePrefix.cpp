#include "adapters/qt/NamePrefix.h"

#include "adapters/qt/FoldedText.h"
#include "adapters/qt/OneLineText.h"
#include "text/DisplayText.h"

namespace dunmora {

NamePrefix::NamePrefix(const QString& typed)
    : folded_(foldedText(typed)), foldedAscii_(asciiOf(folded_))
{
}

bool NamePrefix::begins(std::string_view name) const
{
    std::string beginning;
    if (!foldedAscii_.empty() && name.size() >= foldedAscii_.size() &&
        appendFoldedAscii(beginning, name.substr(0, foldedAscii_.size()))) {
        return beginning == foldedAscii_;
    }
    // Too short to tell, or letters that folding may make more or fewer of.
    return !name.empty() && !isPlainAscii(name) &&
           foldedText(oneLineText(name)).startsWith(folded_);
}

}  // namespace dunmora
