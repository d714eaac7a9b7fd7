#pragma once

#include <optional>
#include <string>

namespace dunmora {

/// Whether an alert reports that something could not be done. A question, which has an alternate
/// button, is never a failure.
enum class AlertStyle { Notice, Failure };

/// The texts and buttons of an alert, as plain UTF-8.
struct AlertContent {
    std::string messageText;
    /// Explains the message; may be empty and may have several lines.
    std::string informativeText;
    std::string defaultButton;
    std::optional<std::string> alternateButton;
    /// A third button, only beside an alternate one.
    std::optional<std::string> otherButton = std::nullopt;
    AlertStyle style = AlertStyle::Notice;
};

/// Shows a question or a notice that the user must respond to before continuing.
class Alert {
public:
    /// What `runModal` returns for each button.
    static constexpr int kDefaultButton = 1;
    static constexpr int kAlternateButton = 0;
    static constexpr int kOtherButton = -1;

    virtual ~Alert() = default;

    /// Shows the alert and returns the button pressed. Escape, closing the window and the end of
    /// the input count as the alternate button, if there is one.
    /// Thread: any; blocks until the user responds. Errors: none.
    virtual int runModal(const AlertContent& content) = 0;
};

}  // namespace dunmora
