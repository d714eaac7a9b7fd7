#pragma once

#include "platform/Workspace.h"

#include <iosfwd>

namespace dunmora {

/// Prints each URL on a line instead of opening it.
class PrintingWorkspace final : public Workspace {
public:
    explicit PrintingWorkspace(std::ostream& out) : out_(out) {}

    bool openURL(const std::string& url) override;

private:
    std::ostream& out_;
};

}  // namespace dunmora
