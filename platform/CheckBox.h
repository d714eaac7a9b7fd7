#pragma once

#include "platform/View.h"

namespace dunmora {

/// The state of a check box, with the platform's values.
enum class CheckState { Mixed = -1, Off = 0, On = 1 };

/// A check box; its action is a `Command` of its interface.
///
/// Thread: the main thread. Errors: none.
class CheckBox : public View {
public:
    virtual CheckState state() const = 0;

    /// Sets the state without running the command.
    virtual void setState(CheckState state) = 0;
};

}  // namespace dunmora
