#pragma once

namespace dunmora {

/// Opens /dev/null in place of each standard stream that is closed, so that the next file opened,
/// such as the address book, does not become standard output. Reading and writing still fail.
/// Thread: the main thread, before it opens any file. Errors: none.
void reserveStandardStreams();

/// Ignores SIGPIPE and SIGXFSZ, so that a closed pipe or a file size limit fails the write instead
/// of killing the process in the middle of a deletion.
/// Thread: the main thread. Errors: none.
void ignoreWriteSignals();

}  // namespace dunmora
