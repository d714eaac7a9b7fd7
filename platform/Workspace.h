#pragma once

#include <string>

namespace dunmora {

/// The user's desktop, as far as it opens things for us.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Hands a URL to the program that the user has chosen for its kind. Returns whether it was
    /// taken.
    /// Thread: any; does not wait for the other program. Errors: none.
    virtual bool openURL(const std::string& url) = 0;
};

}  // namespace dunmora
