#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace dunmora {

/// Converts bytes to UTF-8. `charset` is the value of a CHARSET parameter, in any case; an empty or
/// unknown one means UTF-8. Bytes that are invalid in it are read as Windows-1252, one by one, so
/// that nothing is dropped.
std::string toUtf8(std::string_view bytes, std::string_view charset);

/// Decodes quoted-printable text (RFC 2045 §6.7) whose soft line breaks have been removed. A "="
/// that is not followed by two hexadecimal digits is kept.
std::string decodeQuotedPrintable(std::string_view text);

/// Decodes base64 text (RFC 4648 §4), ignoring blanks and line ends. Returns nothing when the text
/// is not base64.
std::optional<std::string> decodeBase64(std::string_view text);

/// The encoding of a file.
enum class FileEncoding {
    /// UTF-8 or another superset of ASCII, which each value names.
    Bytes,
    Utf16LittleEndian,
    Utf16BigEndian,
};

/// Detects UTF-16 by its byte-order mark or, without one, by BEGIN at the beginning of the text, in
/// any case and with white space before it. Fewer zero bytes prove nothing: they also remain
/// between the cards of damaged files.
FileEncoding detectEncoding(std::string_view bytes);

/// Converts UTF-16 to UTF-8; a byte-order mark becomes U+FEFF and half of a surrogate pair U+FFFD.
/// A last odd byte is dropped.
std::string utf16ToUtf8(std::string_view bytes, FileEncoding encoding);

/// Converts UTF-8 to UTF-16 without a byte-order mark. Bytes that are not UTF-8 become U+FFFD.
std::string utf8ToUtf16(std::string_view text, FileEncoding encoding);

/// A line end (CR LF) in this encoding.
std::string lineEndIn(FileEncoding encoding);

/// The byte-order mark of UTF-16; empty for other files, which need none.
std::string byteOrderMarkOf(FileEncoding encoding);

/// Returns the size in UTF-16, in bytes, of a text that `utf16ToUtf8` returned.
std::size_t utf16Size(std::string_view utf8);

}  // namespace dunmora
