#include "ui/ProgressWindowController.h"

#include "base/NotificationCenter.h"
#include "platform/ProgressIndicator.h"
#include "platform/TextField.h"
#include "platform/Window.h"
#include "ui/AppData.h"

#include <utility>

namespace dunmora {

namespace {

using Operation = void (ProgressWindowController::*)(const Notification&);

void subscribe(const std::shared_ptr<ProgressWindowController>& controller, std::string_view name,
               Operation operation)
{
    // A worker may be delivering a notification while the last owner releases the controller. The
    // weak pointer makes the handler either run on a live controller or not run.
    NotificationCenter::defaultCenter().addObserver(
        controller.get(), name,
        [weak = std::weak_ptr(controller), operation](const Notification& notification) {
            if (const auto alive = weak.lock()) {
                ((*alive).*operation)(notification);
            }
        });
}

}  // namespace

std::shared_ptr<ProgressWindowController> ProgressWindowController::init()
{
    std::shared_ptr<ProgressWindowController> controller(new ProgressWindowController);
    if (controller->window() == nullptr) {
        return nullptr;
    }
    subscribe(controller, kMsgShowMessage, &ProgressWindowController::OnShowMessage);
    subscribe(controller, kMsgProgress, &ProgressWindowController::OnProgress);
    return controller;
}

ProgressWindowController::ProgressWindowController() : WindowController("ProgressWindow") {}

ProgressWindowController::~ProgressWindowController()
{
    auto& center = NotificationCenter::defaultCenter();
    center.removeObserver(this, kMsgShowMessage);
    center.removeObserver(this, kMsgProgress);
}

void ProgressWindowController::OnProgress(const Notification& notification)
{
    const auto now = notification.progress();
    // Set the whole range every time: a new pass may have another number of items.
    progress_->setMinValue(0.0);
    progress_->setMaxValue(now.total);
    progress_->setDoubleValue(now.current);
    progress_->setNeedsDisplay();
}

void ProgressWindowController::OnShowMessage(const Notification& notification)
{
    txtInfo_->setStringValue(notification.text());
    txtInfo_->setNeedsDisplay();
}

void ProgressWindowController::windowDidLoad(Interface& interface)
{
    progress_ = &interface.progressIndicator("progress");
    txtInfo_ = &interface.textField("txtInfo");
    interface.window().setLevel(WindowLevel::Floating);
}

void openProgressWindow(const void* sender)
{
    auto progress = ProgressWindowController::init();
    if (progress) {
        progress->showWindow(sender);
    }
    AppData::app().setProgress(std::move(progress));
}

void closeProgressWindow()
{
    auto& shared = AppData::app();
    if (shared.progress()) {
        shared.progress()->close();
    }
    shared.setProgress(nullptr);
}

}  // namespace dunmora
