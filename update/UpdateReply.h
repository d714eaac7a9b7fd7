#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace dunmora {

/// A version newer than the running one is available.
struct NewerVersion {
    /// Where to download it; the second line of the reply, unchanged.
    std::string downloadUrl;
    /// The text to show to the user; the third line of the reply, plain text.
    std::string message;
};

/// The running version is the latest one, or later.
struct UpToDate {
    std::string downloadUrl;
};

/// The reply is not UTF-8, or not three lines.
struct UnreadableReply {};

/// The meaning of the update service's reply for the running version.
using UpdateReply = std::variant<NewerVersion, UpToDate, UnreadableReply>;

/// Judges a reply of three lines separated by line feeds: the latest version, the download address
/// and the message. An unknown running version counts as 0, so any positive version is newer.
/// Thread: any. Errors: none.
UpdateReply judgeUpdateReply(std::string_view body,
                             const std::optional<std::string>& runningVersion);

/// Returns the number that a version begins with, after white space: an optional sign, digits with
/// an optional decimal point, an optional exponent. The locale does not matter. Returns 0 when
/// there is no number, and the largest double when it is too large for one. Versions are compared
/// as such numbers, so 1.10 is older than 1.9. Thread: any. Errors: none.
double versionNumber(std::string_view text);

}  // namespace dunmora
