#pragma once

#include "platform/View.h"

#include <string_view>

namespace dunmora {

/// A text shown in a window.
class TextField : public View {
public:
    /// Copies the text, plain UTF-8, and requests a redraw that shows it.
    /// Thread: any, one at a time; never waits for the main thread. Errors: none.
    virtual void setStringValue(std::string_view text) = 0;

    /// Requests one redraw; requests that arrive before it happens are merged.
    /// Thread: any; never waits for the main thread. Errors: none.
    virtual void setNeedsDisplay() = 0;
};

}  // namespace dunmora
