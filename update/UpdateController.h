#pragma once

#include "platform/Connection.h"
#include "platform/Window.h"
#include "ui/WindowController.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class Button;
class CheckBox;
class ProgressIndicator;
class TextField;
class View;

/// The update check and the small window that shows its outcome. A silent check shows the window
/// only when a newer version is there; one that the user asked for shows it from the start.
///
/// Thread: the main thread. Errors: none.
class UpdateController final : public WindowController,
                               public WindowDelegate,
                               public ConnectionDelegate {
public:
    /// Loads the window without showing it. Without its interface file the checks run all the same.
    UpdateController();
    /// Transfers that are still under way would report to nobody, and are cancelled.
    ~UpdateController() override;
    UpdateController(const UpdateController&) = delete;
    UpdateController& operator=(const UpdateController&) = delete;

    /// The one instance, made on first use and kept until the process ends.
    static UpdateController& updater();

    /// Ends the one instance; the next use makes a new one. For who takes the desktop away before
    /// the process ends, as a test does.
    static void endUpdater();

    /// Starts a check, silent or with the window shown. A silent one does nothing when the user has
    /// turned the automatic check off. A transfer under way is not cancelled, but nothing that it
    /// still delivers counts.
    void CheckForUpdate(bool showWindow);

    /// Stores whether the automatic check is on.
    void OnUpdate(View* sender);

    /// Opens the download address and closes the window.
    void OnDownload(View* sender);

    void OnClose(View* sender);

    /// Cancels the transfer in hand, but for a silent check's that has offered nothing.
    void windowWillClose() override;

    void didReceiveResponse(const Connection& connection) override;
    void didReceiveData(const Connection& connection, std::string_view bytes) override;
    std::string willSendRequest(const Connection& connection, const std::string& url) override;
    void didFailWithError(const Connection& connection, const std::string& description) override;
    void connectionDidFinishLoading(const Connection& connection) override;

private:
    void windowDidLoad(Interface& interface) override;

    /// Puts the window into its busy layout.
    void setup();
    void showActivity();
    void showControls();
    void setMessage(std::string_view text);
    /// Lets go of a transfer that may still be under way; it goes on, but does not count any more.
    void replaceTransfer();
    void releaseTransfer();

    Button* btnDownload_ = nullptr;
    TextField* labelMessage_ = nullptr;
    CheckBox* ckUpdate_ = nullptr;
    View* vwControls_ = nullptr;
    View* vwActivity_ = nullptr;
    ProgressIndicator* progressIndicator_ = nullptr;

    bool ifShowWindow_ = false;
    std::string urlDownload_;
    /// The body so far; none when no transfer is held.
    std::optional<std::string> netData_;
    std::shared_ptr<Connection> conn_;
    /// Those that may still be under way and report here.
    std::vector<std::weak_ptr<Connection>> replaced_;
};

}  // namespace dunmora
