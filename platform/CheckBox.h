#pragma once

#include "platform/View.h"

namespace dunmora {

/// What a check box shows; the numbers are the platform's.
enum class CheckState { Mixed = -1, Off = 0, On = 1 };

/// A check box; what a click does is a `Command` of its interface.
class CheckBox : public View {
public:
    virtual CheckState state() const = 0;

    /// Shows the state; no command runs.
    virtual void setState(CheckState state) = 0;
};

}  // namespace dunmora
