#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace dunmora {

/// A line of a text before unfolding: its content is [begin, end), and the next line begins at
/// `next`.
struct Line {
    std::size_t begin;
    std::size_t end;
    std::size_t next;
};

/// Finds the lines of a text. A line ends with LF, CR LF or CR, or with several CR before one LF,
/// which careless conversions produce.
class Lines final {
public:
    explicit Lines(std::string_view text) : text_(text) {}

    /// Returns the line that begins at `position`. Positions must not decrease from call to call.
    Line at(std::size_t position)
    {
        if (!isKnown_ || position >= next_) {
            findLineFeed(position);
        }
        const auto* loneReturn = static_cast<const char*>(
            std::memchr(text_.data() + position, '\r', contentEnd_ - position));
        if (loneReturn != nullptr) {
            const auto end = static_cast<std::size_t>(loneReturn - text_.data());
            return {position, end, end + 1};
        }
        return {position, contentEnd_, next_};
    }

private:
    // The next line feed is remembered until it is passed: in a text with lone CRs, every line
    // would otherwise search the whole rest of the text.
    void findLineFeed(std::size_t position)
    {
        const auto lineFeed = text_.find('\n', position);
        isKnown_ = true;
        if (lineFeed == std::string_view::npos) {
            contentEnd_ = next_ = text_.size();
            return;
        }
        next_ = lineFeed + 1;
        contentEnd_ = lineFeed;
        while (contentEnd_ > position && text_[contentEnd_ - 1] == '\r') {
            --contentEnd_;
        }
    }

    std::string_view text_;
    bool isKnown_ = false;
    // Where the content before the next line feed ends, and where the line after it begins.
    std::size_t contentEnd_ = 0;
    std::size_t next_ = 0;
};

/// What to do with the blank that begins a continuation line. vCard 2.1 keeps it.
enum class FoldBlank : std::uint8_t { Remove, Keep };

/// What to do with a "=" at the end of a line. In quoted-printable text it is a soft line break
/// (RFC 2045 §6.7).
enum class SoftBreaks : std::uint8_t { Keep, Remove };

/// Joins the lines of a property into one (RFC 6350 §3.2).
std::string unfold(std::string_view text, FoldBlank foldBlank, SoftBreaks softBreaks);

}  // namespace dunmora
