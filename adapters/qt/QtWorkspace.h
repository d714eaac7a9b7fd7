#pragma once

#include "platform/Workspace.h"

namespace dunmora {

class QtApplication;

/// Opens web pages and new messages in the user's programs, and nothing else: an untrusted URL must
/// not start a program, show a file or send one.
class QtWorkspace final : public Workspace {
public:
    /// `application` must outlive the workspace.
    explicit QtWorkspace(QtApplication& application) : application_(application) {}

    bool openURL(const std::string& url) override;

private:
    QtApplication& application_;
};

}  // namespace dunmora
