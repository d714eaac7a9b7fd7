#pragma once

#include <string>

namespace dunmora {

/// Opens URLs in the user's other programs.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens a URL in the user's default program for its scheme. Returns whether one accepted it.
    /// Thread: any; does not wait for the other program. Errors: none.
    virtual bool openURL(const std::string& url) = 0;
};

}  // namespace dunmora
