#pragma once

#include <optional>
#include <string>

namespace dunmora {

/// What an alert says and offers; all text is UTF-8.
struct AlertContent {
    std::string messageText;
    std::string informativeText;
    std::string defaultButton;
    std::optional<std::string> alternateButton;
};

/// A question or a notice that the user has to answer before anything goes on.
class Alert {
public:
    /// What `runModal` returns for each button.
    static constexpr int kDefaultButton = 1;
    static constexpr int kAlternateButton = 0;

    virtual ~Alert() = default;

    /// Shows the alert and waits for the button pressed. Escape, closing or the end of the input
    /// count as the alternate button where there is one.
    /// Thread: any; blocks until it is answered. Errors: none.
    virtual int runModal(const AlertContent& content) = 0;
};

}  // namespace dunmora
