#pragma once

namespace dunmora {

class CheckBox;

/// Sets the box on when the flag is true and off otherwise.
/// Thread: the main thread. Errors: none.
void Check(CheckBox& box, bool on);

}  // namespace dunmora
