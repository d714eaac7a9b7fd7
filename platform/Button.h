#pragma once

#include "platform/View.h"

#include <string>

namespace dunmora {

/// A button; what it does is a `Command` of its interface.
class Button : public View {
public:
    /// The plain text on it, UTF-8.
    virtual void setTitle(const std::string& title) = 0;
};

}  // namespace dunmora
