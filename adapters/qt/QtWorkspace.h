#pragma once

#include "platform/Workspace.h"

namespace dunmora {

class QtApplication;

/// Opens web pages and new messages in the user's own programs, and nothing else: a URL that came
/// from elsewhere must not start a program, show a file or send one.
class QtWorkspace final : public Workspace {
public:
    /// The application must outlive it.
    explicit QtWorkspace(QtApplication& application) : application_(application) {}

    bool openURL(const std::string& url) override;

private:
    QtApplication& application_;
};

}  // namespace dunmora
