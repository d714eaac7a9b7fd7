#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace dunmora {

// Text from an address book, a path or a server may contain anything. These functions make it safe
// to show, and all but `windowLines` in one line: nothing in the result moves a cursor, breaks the
// line, changes the writing direction of what follows or hides in a word.
// Thread: any. Errors: none.

/// What a character does to the line it is shown in.
enum class DisplayEffect {
    /// Takes its place in the line, or joins the character before it.
    None,
    /// A control character that does not break the line: the rest of C0 and C1, and DEL.
    Control,
    Tab,
    /// Line feed, vertical tab, form feed, carriage return, U+0085, U+2028 and U+2029 (UAX #14).
    LineBreak,
    /// An implicit mark: affects its neighbours only (UAX #9 §2.6).
    DirectionalMark,
    /// An embedding, override or isolate: left open, it affects everything after it (UAX #9 §2.1).
    DirectionalFormatting,
    /// Shows nothing, so that different texts look equal: soft hyphen, combining grapheme joiner,
    /// zero width space, byte-order mark, interlinear annotation, and tags.
    Hidden,
};

DisplayEffect displayEffect(char32_t codePoint);

/// Whether the text consists of printable ASCII characters and spaces only, so that it is safe as
/// it is and every byte takes one column.
bool isPlainAscii(std::string_view text);

/// More than any cell, tool tip or name needs to show. Drawing a longer text, or reading it aloud,
/// would stall a program.
inline constexpr std::size_t kMaxShownBytes = 1024;

/// Follows the shown part of a text that was cut.
inline constexpr std::string_view kEllipsis = "\u2026";

/// The longest beginning of at most `maxBytes` bytes that does not split a character of valid
/// UTF-8.
std::string_view shownPart(std::string_view text, std::size_t maxBytes = kMaxShownBytes);

/// The shown part of the text, with an ellipsis when it was cut.
std::string shownText(std::string_view text, std::size_t maxBytes = kMaxShownBytes);

/// Appends the text with the C0 controls and DEL replaced by their pictures (U+2400 and following).
/// C1 controls, line separators, directional marks and formatting, hidden characters and bytes that
/// are not UTF-8 become U+FFFD. The flags of England, Scotland and Wales stay, although an emoji of
/// theirs consists of tags (UTS #51): no text can hide in one of three sequences.
void appendDisplayText(std::string& out, std::string_view text);

/// The text as `appendDisplayText` appends it.
std::string displayText(std::string_view text);

/// Appends the text for a window, where nothing has to show that it was changed: line breaks (CR LF
/// is one) and tabs become spaces, directional formatting and hidden characters are dropped, and
/// other control characters and bytes that are not UTF-8 become U+FFFD. The same flags stay.
void appendWindowText(std::string& out, std::string_view text);

/// The text as `appendWindowText` appends it.
std::string windowText(std::string_view text);

/// The text as `appendWindowText` appends it, but with a line feed for each line break.
std::string windowLines(std::string_view text);

/// The text as `displayText` returns it, in quotation marks: “text”.
std::string quotedText(std::string_view text);

/// The path in quotation marks.
std::string quotedPath(const std::filesystem::path& path);

}  // namespace dunmora
