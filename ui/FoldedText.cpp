#include "ui/FoldedText.h"

#include "platform/TextFolding.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace dunmora {

namespace {

// A search folds every text of every row, so the characters are folded as many at a time as fit in
// a `Word`.

/// A word that consists of this byte.
template <typename Word>
constexpr Word repeated(unsigned char byte)
{
    return ~Word{} / 0xFFU * byte;
}

/// Whether all characters are printable ASCII, as in `isPlainAscii`.
template <typename Word>
constexpr bool arePlain(Word characters)
{
    // Of ASCII, only DEL gets a high bit in the first sum, and only control characters get none in
    // the second. A byte beyond ASCII does one or the other; what it carries into the next byte
    // changes nothing any more.
    const auto del = characters + repeated<Word>(0x80 - 0x7F);
    const auto printable = characters + repeated<Word>(0x80 - ' ');
    return ((del | ~printable) & repeated<Word>(0x80)) == 0;
}

/// The plain characters in lower case.
template <typename Word>
constexpr Word lowered(Word characters)
{
    const auto fromA = characters + repeated<Word>(0x80 - 'A');
    const auto beyondZ = characters + repeated<Word>(0x80 - ('Z' + 1));
    // The high bit of each upper-case letter, moved to the bit by which the cases differ.
    return characters | ((fromA & ~beyondZ & repeated<Word>(0x80)) >> 2U);
}

/// Writes a word's characters in lower case if they are plain. Returns whether they are.
template <typename Word>
bool foldPlainWord(const char* text, char* folded)
{
    Word characters{};
    std::memcpy(&characters, text, sizeof characters);
    const auto lower = lowered(characters);
    std::memcpy(folded, &lower, sizeof lower);
    return arePlain(characters);
}

/// Writes the text in lower case if it is plain. Returns whether it is; if not, what it has written
/// has no meaning. The text must not be shorter than a word.
template <typename Word>
bool foldPlainWords(std::string_view text, char* folded)
{
    // The last word may overlap the one before.
    const auto last = text.size() - sizeof(Word);
    for (std::size_t position = 0; position < last; position += sizeof(Word)) {
        if (!foldPlainWord<Word>(text.data() + position, folded + position)) {
            return false;
        }
    }
    return foldPlainWord<Word>(text.data() + last, folded + last);
}

bool foldPlain(std::string_view text, char* folded)
{
    if (text.size() >= sizeof(std::uint64_t)) {
        return foldPlainWords<std::uint64_t>(text, folded);
    }
    if (text.size() >= sizeof(std::uint32_t)) {
        return foldPlainWords<std::uint32_t>(text, folded);
    }
    std::transform(text.begin(), text.end(), folded, toLowerAscii);
    return isPlainAscii(text);
}

}  // namespace

void appendFolded(std::string& out, std::string_view text, const TextFolding& folding)
{
    const auto begin = out.size();
    out.resize(begin + text.size());
    if (!foldPlain(text, out.data() + begin)) {
        out.resize(begin);
        out += folding.folded(windowText(text));
    }
}

}  // namespace dunmora
