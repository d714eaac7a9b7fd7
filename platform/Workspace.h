#pragma once

#include <filesystem>
#include <string>

namespace dunmora {

/// Opens URLs and pages in the user's other programs.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens a URL in the user's default program for its scheme. Returns whether one accepted it.
    /// Thread: any; does not wait for the other program. Errors: none.
    virtual bool openURL(const std::string& url) = 0;

    /// Opens a web page at an address that cannot be trusted: http or https only, without its user
    /// information. A carriage return at its end is dropped. An alert, shown after the call,
    /// reports an address that cannot be opened.
    /// Thread: any; does not wait for the other program or the user. Errors: none.
    virtual void openWebPage(const std::string& url) = 0;

    /// Opens a page of HTML that belongs to this program in the user's browser: a file with an
    /// absolute path and the extension ".html". Returns whether a program accepted it.
    /// Thread: any; does not wait for the other program. Errors: none.
    virtual bool openLocalPage(const std::filesystem::path& page) = 0;

    /// Returns the host that `openWebPage` would open, in the ASCII form that is looked up
    /// (RFC 5891) and without the port; empty when it would refuse the address.
    /// Thread: any. Errors: none.
    virtual std::string webHost(const std::string& url) const = 0;
};

}  // namespace dunmora
