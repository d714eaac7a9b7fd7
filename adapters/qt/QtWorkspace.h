#pragma once

#include "platform/Workspace.h"

#include <filesystem>
#include <string>

namespace dunmora {

class QtApplication;

/// Opens web pages, new messages and this program's own pages in the user's programs, and nothing
/// else: an untrusted URL must not start a program, show a file or send one.
class QtWorkspace final : public Workspace {
public:
    /// `application` must outlive the workspace.
    explicit QtWorkspace(QtApplication& application) : application_(application) {}

    bool openURL(const std::string& url) override;
    void openWebPage(const std::string& url) override;
    bool openLocalPage(const std::filesystem::path& page) override;
    std::string webHost(const std::string& url) const override;

private:
    QtApplication& application_;
};

}  // namespace dunmora
