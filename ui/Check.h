#pragma once

namespace dunmora {

class CheckBox;

/// Checks or unchecks the box.
/// Thread: the main thread. Errors: none.
void Check(CheckBox& box, bool on);

}  // namespace dunmora
