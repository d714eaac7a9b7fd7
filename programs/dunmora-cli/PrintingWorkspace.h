#pragma once

#include "platform/Workspace.h"

#include <filesystem>
#include <iosfwd>
#include <string>

namespace dunmora {

/// Prints each URL or path on a line instead of opening it. No web page has a host to show.
class PrintingWorkspace final : public Workspace {
public:
    explicit PrintingWorkspace(std::ostream& out) : out_(out) {}

    bool openURL(const std::string& url) override;
    void openWebPage(const std::string& url) override;
    bool openLocalPage(const std::filesystem::path& page) override;
    std::string webHost(const std::string& url) const override;

private:
    std::ostream& out_;
};

}  // namespace dunmora
