#pragma once

namespace dunmora {

class Bundle;

/// Runs the program with windows. Returns its exit status, but only if no window was shown.
/// Thread: the main thread, before any other thread starts. Errors: none.
int runDunmora(int argc, char** argv, Bundle& bundle);

}  // namespace dunmora
