#include "update/UpdateMenu.h"

#include "base/NotificationCenter.h"
#include "platform/InterfaceLoader.h"
#include "update/UpdateController.h"

namespace dunmora {

UpdateMenu::UpdateMenu(Interface& mainInterface)
    : checkAtEveryStart_(&mainInterface.command("OnCheckAtEveryStart"))
{
    if (!UpdateController::hasService()) {
        mainInterface.command("OnCheckForUpdate").setHidden(true);
        checkAtEveryStart_->setHidden(true);
    }
    checkAtEveryStart_->setHandler([](View* /*sender*/) { OnCheckAtEveryStart(); });
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgAutomaticCheck, [this](const Notification& /*notification*/) { showState(); });
    showState();
}

UpdateMenu::~UpdateMenu()
{
    NotificationCenter::defaultCenter().removeObserver(this, kMsgAutomaticCheck);
}

void UpdateMenu::OnCheckAtEveryStart()
{
    UpdateController::updater().setAutomaticCheck(!UpdateController::isAutomaticCheckOn());
}

void UpdateMenu::showState()
{
    checkAtEveryStart_->setChecked(UpdateController::isAutomaticCheckOn());
}

}  // namespace dunmora
