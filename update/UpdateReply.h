#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace dunmora {

/// A newer version than the running one is there.
struct NewerVersion {
    /// Where it is; the service's text as it stands.
    std::string downloadUrl;
    /// What the service has to say about it; plain text.
    std::string message;
};

/// The running version is the latest one, or later.
struct UpToDate {
    std::string downloadUrl;
};

/// The reply is not UTF-8, or not three lines.
struct UnreadableReply {};

/// What the update service's reply means for the running version.
using UpdateReply = std::variant<NewerVersion, UpToDate, UnreadableReply>;

/// Judges a reply of three lines, each ended by one line feed but the last: the latest version, the
/// download address, the message. Without a running version any positive one is newer.
/// Thread: any. Errors: none.
UpdateReply judgeUpdateReply(std::string_view body,
                             const std::optional<std::string>& runningVersion);

/// The number that a version text begins with, after blanks: a sign, digits with a decimal point
/// and an exponent, as far as they are there, in every locale alike. 0 where there is no number;
/// one too large for a double is the largest. Versions are compared as such numbers, so that 1.10
/// is older than 1.9.
/// Thread: any. Errors: none.
double versionNumber(std::string_view text);

}  // namespace dunmora
