#include "app/DunmoraAppDelegate.h"

#include "base/JobThreads.h"
#include "base/NotificationCenter.h"
#include "engine/ContactsParser.h"
#include "platform/Desktop.h"
#include "ui/FilterController.h"
#include "ui/ProgressWindowController.h"
#include "update/UpdateController.h"

#include <utility>

namespace dunmora {

DunmoraAppDelegate::~DunmoraAppDelegate()
{
    NotificationCenter::defaultCenter().removeObserver(this, kMsgFinished);
}

void DunmoraAppDelegate::applicationDidFinishLaunching()
{
    UpdateController::updater().CheckForUpdate(false);
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgFinished, [this](const Notification& notification) {
            Desktop::current().application.performOnMainThread([&] { OnFinished(notification); });
        });
}

void DunmoraAppDelegate::applicationDidBecomeActive()
{
    if (alreadyRun_) {
        return;
    }
    alreadyRun_ = true;
    showProgress();
    Desktop::current().application.detachNewThread(kThreadLoadContacts, [this] { LoadContacts(); });
}

void DunmoraAppDelegate::windowWillClose()
{
    Desktop::current().application.terminate(this);
}

void DunmoraAppDelegate::showProgress()
{
    openProgressWindow(this);
}

// A command and thread bodies, which are member functions because the delegate is their target.
// NOLINTBEGIN(readability-convert-member-functions-to-static)
void DunmoraAppDelegate::OnCheckForUpdate(View* /*sender*/)
{
    UpdateController::updater().CheckForUpdate(true);
}

void DunmoraAppDelegate::LoadContacts()
{
    ContactsParser::parser().load();
}

void DunmoraAppDelegate::FindDuplicates()
{
    ContactsParser::parser().findDupes();
}
// NOLINTEND(readability-convert-member-functions-to-static)

void DunmoraAppDelegate::OnFinished(const Notification& notification)
{
    const auto job = notification.text();

    closeProgressWindow();

    if (job == kJobLoading) {
        FilterController dialog;
        if (dialog.showModal()) {
            showProgress();
            Desktop::current().application.detachNewThread(kThreadFindDuplicates,
                                                           [this] { FindDuplicates(); });
        }
    } else if (job == kJobFinding || job == kJobDeleting) {
        NotificationCenter::defaultCenter().postNotification(kMsgReload, this);
    }
}

}  // namespace dunmora
