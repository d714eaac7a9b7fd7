#pragma once

#include "platform/Workspace.h"

#include <string>

namespace dunmora {

class QtApplication;

/// Opens web pages and new messages in the user's programs, and nothing else: an untrusted URL must
/// not start a program, show a file or send one.
class QtWorkspace final : public Workspace {
public:
    /// `application` must outlive the workspace.
    explicit QtWorkspace(QtApplication& application) : application_(application) {}

    bool openURL(const std::string& url) override;
    void openWebPage(const std::string& url) override;
    std::string webHost(const std::string& url) const override;

private:
    QtApplication& application_;
};

}  // namespace dunmora
