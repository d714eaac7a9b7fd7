#pragma once

#include <cstdint>
#include <string_view>

namespace dunmora {

/// A pass of a job begins; the payload is the text to show.
inline constexpr std::string_view kMsgShowMessage = "msgShowMessage";
/// An item of the pass is about to be handled; the payload is the job's `Progress`.
inline constexpr std::string_view kMsgProgress = "msgProgress";
/// A job has ended without an error; the payload is the job's name.
inline constexpr std::string_view kMsgFinished = "msgFinished";
/// The engine's data have changed; there is no payload.
inline constexpr std::string_view kMsgReload = "msgReload";

/// All people have been read from the address book.
inline constexpr std::string_view kJobLoading = "loading";
/// The groups and the review rows are ready.
inline constexpr std::string_view kJobFinding = "finding";
/// The checked people have been removed and the address book saved.
inline constexpr std::string_view kJobDeleting = "deleting";

/// The progress of a job. One object serves the whole job and changes between posts: an observer
/// that needs the numbers after its handler has returned must copy them.
struct Progress {
    /// The number of items of the current pass.
    std::int32_t total = 0;
    /// The index, from 0, of the item about to be handled; a deletion posts twice that index.
    std::int32_t current = 0;
};

}  // namespace dunmora
