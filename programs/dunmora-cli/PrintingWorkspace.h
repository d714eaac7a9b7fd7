#pragma once

#include "platform/Workspace.h"

#include <iosfwd>

namespace dunmora {

/// A terminal's way to open an address: it shows it, one a line.
class PrintingWorkspace final : public Workspace {
public:
    explicit PrintingWorkspace(std::ostream& out) : out_(out) {}

    bool openURL(const std::string& url) override;

private:
    std::ostream& out_;
};

}  // namespace dunmora
