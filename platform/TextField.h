#pragma once

#include "platform/View.h"

#include <string_view>

namespace dunmora {

/// A text that a window shows.
class TextField : public View {
public:
    /// Takes a copy of the text, plain UTF-8, which the next redraw shows; asks for that redraw.
    /// Thread: any, one at a time; never waits for the main thread.
    virtual void setStringValue(std::string_view text) = 0;
};

}  // namespace dunmora
