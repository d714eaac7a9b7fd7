#pragma once

#include "adapters/vcard/LineEnd.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace dunmora {

/// A line of a text before unfolding: its content is [begin, end), and the next line begins at
/// `next`.
struct Line {
    std::size_t begin;
    std::size_t end;
    std::size_t next;
    /// Neither a backslash nor a byte outside ASCII is in the content.
    bool isPlain;
};

/// Finds the lines of a text. A line ends with LF, CR LF or CR, or with several CR before one LF,
/// which careless conversions produce.
class Lines final {
public:
    explicit Lines(std::string_view text) : text_(text) {}

    /// Returns the line that begins at `position`. Positions must not decrease from call to call.
    Line at(std::size_t position)
    {
        const auto end = findLineEnd(text_, position);
        auto next = std::min(end.offset + 1, text_.size());
        if (end.offset < text_.size() && text_[end.offset] == '\r') {
            const bool isPair = next < text_.size() && text_[next] == '\n';
            next = isPair ? next + 1 : afterReturns(end.offset);
        }
        return {position, end.offset, next, end.isPlain};
    }

private:
    /// Returns where the line after a CR begins that is not one of a CR LF.
    std::size_t afterReturns(std::size_t position)
    {
        // The end of a row of CRs is remembered: in a text of CRs alone, every line would otherwise
        // search the whole rest of the text.
        if (position >= returnsEnd_) {
            returnsEnd_ = std::min(text_.find_first_not_of('\r', position), text_.size());
        }
        const bool endInLineFeed = returnsEnd_ < text_.size() && text_[returnsEnd_] == '\n';
        return endInLineFeed ? returnsEnd_ + 1 : position + 1;
    }

    std::string_view text_;
    // Where the row of CRs ends that was met last.
    std::size_t returnsEnd_ = 0;
};

/// What to do with the blank that begins a continuation line. vCard 2.1 keeps it.
enum class FoldBlank : std::uint8_t { Remove, Keep };

/// What to do with a "=" at the end of a line. In quoted-printable text it is a soft line break
/// (RFC 2045 §6.7).
enum class SoftBreaks : std::uint8_t { Keep, Remove };

/// Joins the lines of a property into one (RFC 6350 §3.2).
std::string unfold(std::string_view text, FoldBlank foldBlank, SoftBreaks softBreaks);

}  // namespace dunmora
