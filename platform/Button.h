#pragma once

#include "platform/View.h"

#include <string>

namespace dunmora {

/// A button; its action is a `Command` of its interface.
class Button : public View {
public:
    /// Sets the button's text, plain UTF-8. Thread: the main thread. Errors: none.
    virtual void setTitle(const std::string& title) = 0;
};

}  // namespace dunmora
