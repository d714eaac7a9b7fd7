#pragma once

namespace dunmora {

/// Fills the places of standard streams that the caller has closed with something that fails to be
/// read or written, too: the address book, opened next, must not end up in their place.
/// Thread: the main thread, before anything is opened. Errors: none.
void occupyStandardStreams();

/// Makes two signals that would end the process errors of the call that they come from: a reader
/// who has gone away and a file that may not grow must not end a deletion midway.
/// Thread: the main thread. Errors: none.
void takeWriteSignalsAsErrors();

}  // namespace dunmora
