#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace dunmora {

/// Whether the bytes are UTF-8 (RFC 3629) throughout.
bool isUtf8(std::string_view bytes);

/// The bytes as UTF-8 text. `charset` is the name of their encoding as a vCard gives it, in any
/// case; an empty or unknown one counts as UTF-8. Bytes that are not valid in it are read as
/// Windows-1252, one by one, so that nothing is dropped.
std::string toUtf8(std::string_view bytes, std::string_view charset);

/// The bytes behind quoted-printable text (RFC 2045 §6.7) whose soft line breaks are gone already.
/// A "=" that no two hexadecimal digits follow stays.
std::string decodeQuotedPrintable(std::string_view text);

/// The bytes behind base64 text (RFC 4648 §4), blanks and line ends apart; none when it is not
/// base64.
std::optional<std::string> decodeBase64(std::string_view text);

/// How the bytes of a file stand for text.
enum class FileEncoding {
    /// UTF-8 or another encoding that contains ASCII; which one is told by each value.
    Bytes,
    Utf16LittleEndian,
    Utf16BigEndian,
};

/// UTF-16 is known by its byte-order mark or, without one, by the zero bytes of its first two
/// ASCII characters.
FileEncoding encodingOf(std::string_view bytes);

/// UTF-16 as UTF-8, a byte-order mark as U+FEFF. A half of a surrogate pair becomes U+FFFD; a last
/// odd byte is left out.
std::string utf16ToUtf8(std::string_view bytes, FileEncoding encoding);

/// How many bytes of UTF-16 stand for this text out of `utf16ToUtf8`.
std::size_t utf16Size(std::string_view utf8);

}  // namespace dunmora
