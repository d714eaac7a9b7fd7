#pragma once

namespace dunmora {

class Bundle;

/// The program with windows, from its arguments to its exit status. It returns only where no window
/// is shown.
/// Thread: the main thread, before any other runs. Errors: none.
int runDunmora(int argc, char** argv, Bundle& bundle);

}  // namespace dunmora
