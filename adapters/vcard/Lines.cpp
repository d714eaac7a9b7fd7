#include "adapters/vcard/Lines.h"

#include "text/Ascii.h"

namespace dunmora {

std::string unfold(std::string_view text, FoldBlank foldBlank, SoftBreaks softBreaks)
{
    std::string whole;
    Lines lines(text);
    bool softBreak = false;
    for (std::size_t position = 0; position < text.size();) {
        const auto line = lines.at(position);
        auto part = text.substr(line.begin, line.end - line.begin);
        if (position != 0 && !softBreak && !part.empty() && isBlank(part.front()) &&
            foldBlank == FoldBlank::Remove) {
            part.remove_prefix(1);
        }
        softBreak =
            softBreaks == SoftBreaks::Remove && part.ends_with('=') && line.end < text.size();
        whole += softBreak ? part.substr(0, part.size() - 1) : part;
        position = line.next;
    }
    return whole;
}

}  // namespace dunmora
