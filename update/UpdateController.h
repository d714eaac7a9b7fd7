#pragma once

#include "platform/Connection.h"
#include "platform/Window.h"
#include "ui/WindowController.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace dunmora {

class Button;
class CheckBox;
class ProgressIndicator;
class TextField;
class View;

/// Posted when the automatic check has been turned on or off; there is no payload.
inline constexpr std::string_view kMsgAutomaticCheck = "msgAutomaticCheck";

/// Runs the update check and owns the small window that shows its outcome. A silent check shows the
/// window only when a newer version is available; a check that the user requested shows it at once.
///
/// An instance must outlive its unfinished transfers, because they report to it.
///
/// Thread: the main thread. Errors: none.
class UpdateController final : public WindowController,
                               public WindowDelegate,
                               public ConnectionDelegate {
public:
    /// Loads the window without showing it. Checks also run when its interface file is missing.
    UpdateController();
    ~UpdateController() override = default;
    UpdateController(const UpdateController&) = delete;
    UpdateController& operator=(const UpdateController&) = delete;

    /// The shared instance, created on first use and never destroyed.
    static UpdateController& updater();

    /// Whether the build names an update service.
    static bool hasService();

    /// Whether a check is sent at every start, as the user has stored it.
    static bool isAutomaticCheckOn();

    /// Sets the check box and stores its state, like the user who clicks it.
    void setAutomaticCheck(bool on);

    /// Starts a check, silently or with the window shown. A silent check does nothing when the user
    /// has turned the automatic check off. An earlier transfer is not cancelled, but its result is
    /// ignored.
    void CheckForUpdate(bool showWindow);

    /// Stores whether the automatic check is on, as the check box shows it.
    void OnUpdate(View* sender);

    /// Opens the download address and closes the window.
    void OnDownload(View* sender);

    void OnClose(View* sender);

    /// Cancels the current transfer, unless it belongs to a silent check that has offered nothing.
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
    void storeAutomaticCheck(bool on);
    void offerDownload(bool isOffered);
    /// Shows which host the offered download comes from; nothing when there is no offer, or its
    /// address cannot be opened.
    void showHost();
    /// Stops the bar of the busy layout, because nothing is under way.
    void stopProgress();
    /// Releases the current transfer. If it has not ended, it continues, but its result is ignored.
    void releaseTransfer();

    Button* btnDownload_ = nullptr;
    TextField* labelHost_ = nullptr;
    TextField* labelMessage_ = nullptr;
    CheckBox* ckUpdate_ = nullptr;
    View* vwControls_ = nullptr;
    View* vwActivity_ = nullptr;
    ProgressIndicator* progressIndicator_ = nullptr;

    bool offersDownload_ = false;
    bool ifShowWindow_ = false;
    std::string urlDownload_;
    /// The body received so far; empty optional when no transfer is held.
    std::optional<std::string> netData_;
    std::shared_ptr<Connection> conn_;
};

}  // namespace dunmora
