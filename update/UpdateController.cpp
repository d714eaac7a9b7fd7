#include "update/UpdateController.h"

#include "base/NotificationCenter.h"
#include "platform/Bundle.h"
#include "platform/Button.h"
#include "platform/CheckBox.h"
#include "platform/Desktop.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/ProgressIndicator.h"
#include "platform/TextField.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "ui/Check.h"
#include "update/UpdateReply.h"

#include <variant>

namespace dunmora {

namespace {

constexpr std::string_view kAutoCheckForUpdates = "AutoCheckForUpdates";
constexpr auto kRequest = "/update/?app=dunmoraapp";
constexpr auto kLatestVersion = "You are running the latest version.";

std::optional<std::string> updateHost()
{
    return Platform::current().bundle.objectForInfoDictionaryKey("DunmoraUpdateHost");
}

/// `view` is null when the window could not be loaded.
void hide(View* view, bool hidden)
{
    if (view != nullptr) {
        view->setHidden(hidden);
    }
}

}  // namespace

UpdateController::UpdateController() : WindowController("UpdateWindow")
{
    window();
    if (progressIndicator_ != nullptr) {
        progressIndicator_->startAnimation();
    }
    setup();
}

UpdateController& UpdateController::updater()
{
    static auto& shared = *new UpdateController;
    return shared;
}

bool UpdateController::hasService()
{
    return updateHost().has_value();
}

bool UpdateController::isAutomaticCheckOn()
{
    const auto& defaults = Platform::current().userDefaults;
    // An absent key means that it is on.
    return !defaults.hasValue(kAutoCheckForUpdates) || defaults.boolForKey(kAutoCheckForUpdates);
}

void UpdateController::setAutomaticCheck(bool on)
{
    if (ckUpdate_ != nullptr) {
        Check(*ckUpdate_, on);
    }
    storeAutomaticCheck(on);
}

void UpdateController::windowDidLoad(Interface& interface)
{
    btnDownload_ = &interface.button("btnDownload");
    labelHost_ = &interface.textField("labelHost");
    labelMessage_ = &interface.textField("labelMessage");
    ckUpdate_ = &interface.checkBox("ckUpdate");
    vwControls_ = &interface.view("vwControls");
    vwActivity_ = &interface.view("vwActivity");
    progressIndicator_ = &interface.progressIndicator("progressIndicator");
    interface.command("OnDownload").setHandler([this](View* sender) { OnDownload(sender); });
    interface.command("OnClose").setHandler([this](View* sender) { OnClose(sender); });
    interface.command("OnUpdate").setHandler([this](View* sender) { OnUpdate(sender); });
    interface.window().setDelegate(this);
    setup();
    interface.window().setLevel(WindowLevel::Status);
}

void UpdateController::setup()
{
    showActivity();
    urlDownload_.clear();
}

void UpdateController::showActivity()
{
    hide(vwControls_, true);
    hide(vwActivity_, false);
    offerDownload(false);
}

void UpdateController::showControls()
{
    hide(vwActivity_, true);
    hide(vwControls_, false);
}

void UpdateController::setMessage(std::string_view text)
{
    if (labelMessage_ != nullptr) {
        labelMessage_->setStringValue(text);
    }
}

void UpdateController::stopProgress()
{
    if (progressIndicator_ != nullptr) {
        progressIndicator_->stopAnimation();
    }
}

void UpdateController::offerDownload(bool isOffered)
{
    offersDownload_ = isOffered;
    hide(btnDownload_, !isOffered);
    showHost();
}

void UpdateController::showHost()
{
    if (labelHost_ == nullptr) {
        return;
    }
    const auto host =
        offersDownload_ ? Platform::current().workspace.webHost(urlDownload_) : std::string();
    labelHost_->setStringValue(host.empty() ? host : "Download opens " + host);
}

void UpdateController::CheckForUpdate(bool showWindow)
{
    const bool isAutomatic = isAutomaticCheckOn();
    if (!isAutomatic && !showWindow) {
        return;
    }
    if (ckUpdate_ != nullptr) {
        Check(*ckUpdate_, isAutomatic);
    }
    urlDownload_.clear();
    showHost();
    ifShowWindow_ = showWindow;
    if (showWindow) {
        if (progressIndicator_ != nullptr) {
            progressIndicator_->startAnimation();
        }
        showActivity();
        this->showWindow(this);
    }
    // The earlier result is ignored even when no new connection can be opened.
    releaseTransfer();
    // Without a service the address has no host, so no connection can be opened.
    conn_ = Desktop::current().connectionOpener.openConnection(
        "http://" + updateHost().value_or("") + kRequest, *this);
    if (conn_) {
        netData_.emplace();
    } else {
        stopProgress();
    }
}

void UpdateController::OnUpdate(View* /*sender*/)
{
    storeAutomaticCheck(ckUpdate_ != nullptr && ckUpdate_->state() == CheckState::On);
}

void UpdateController::storeAutomaticCheck(bool on)
{
    auto& defaults = Platform::current().userDefaults;
    defaults.setBool(kAutoCheckForUpdates, on);
    defaults.synchronize();
    NotificationCenter::defaultCenter().postNotification(kMsgAutomaticCheck, this);
}

void UpdateController::OnDownload(View* /*sender*/)
{
    Platform::current().workspace.openWebPage(urlDownload_);
    close();
}

void UpdateController::OnClose(View* /*sender*/)
{
    close();
}

void UpdateController::windowWillClose()
{
    if (!ifShowWindow_ && urlDownload_.empty()) {
        return;
    }
    if (conn_) {
        conn_->cancel();
        releaseTransfer();
    }
}

void UpdateController::didReceiveResponse(const Connection& /*connection*/)
{
    // The bodies of all responses of one transfer are joined.
}

void UpdateController::didReceiveData(const Connection& connection, std::string_view bytes)
{
    if (&connection == conn_.get() && netData_) {
        *netData_ += bytes;
    }
}

std::string UpdateController::willSendRequest(const Connection& /*connection*/,
                                              const std::string& url)
{
    return url;
}

void UpdateController::didFailWithError(const Connection& connection,
                                        const std::string& description)
{
    if (&connection != conn_.get()) {
        return;
    }
    offerDownload(false);
    setMessage("Failed to check updates due to:'" + description + "'");
    stopProgress();
    releaseTransfer();
}

void UpdateController::connectionDidFinishLoading(const Connection& connection)
{
    if (&connection != conn_.get() || !netData_) {
        return;
    }
    const auto running = Platform::current().bundle.objectForInfoDictionaryKey("CFBundleVersion");
    const auto reply = judgeUpdateReply(*netData_, running);
    if (const auto* const newer = std::get_if<NewerVersion>(&reply)) {
        urlDownload_ = newer->downloadUrl;
        setMessage(newer->message);
        offerDownload(true);
        if (!ifShowWindow_) {
            showWindow(this, KeyboardFocus::Leave);
        }
    } else {
        setMessage(kLatestVersion);
        if (const auto* const upToDate = std::get_if<UpToDate>(&reply)) {
            urlDownload_ = upToDate->downloadUrl;
            // A silent check leaves an earlier offer, whose button opens this address from now on.
            showHost();
            if (!ifShowWindow_) {
                // The window is hidden: it keeps its busy layout, and the transfer is held until
                // the next check replaces it.
                return;
            }
        } else {
            offerDownload(false);
        }
    }
    showControls();
    releaseTransfer();
}

void UpdateController::releaseTransfer()
{
    conn_.reset();
    netData_.reset();
}

}  // namespace dunmora
