#include "ui/FilterController.h"

#include "base/Settings.h"
#include "platform/CheckBox.h"
#include "ui/Check.h"

#include <array>

namespace dunmora {

FilterController::FilterController() : ModalController("FilterWindow") {}

bool FilterController::showModal()
{
    DoModal();
    return result_;
}

void FilterController::OnCheckBoxes(View* sender)
{
    struct Choice {
        const CheckBox* box;
        void (Settings::*setFlag)(bool);
    };
    const std::array<Choice, 6> choices{{
        {btnFilterNickname_, &Settings::setFilterNickname},
        {btnFilterFirstname_, &Settings::setFilterFirstname},
        {btnFilterLastname_, &Settings::setFilterLastname},
        {btnFilterHome_, &Settings::setFilterHome},
        {btnFilterWork_, &Settings::setFilterWork},
        {btnFilterMobile_, &Settings::setFilterMobile},
    }};
    for (const auto& choice : choices) {
        if (choice.box != nullptr && choice.box == sender) {
            (Settings::settings().*choice.setFlag)(choice.box->state() == CheckState::On);
            return;
        }
    }
}

void FilterController::OnOkay(View* /*sender*/)
{
    const auto& settings = Settings::settings();
    // Every click has been stored, so the stored flags are what the boxes show.
    const bool anyField = settings.filterNickname() || settings.filterFirstname() ||
                          settings.filterLastname() || settings.filterWork() ||
                          settings.filterHome() || settings.filterMobile();
    if (!anyField) {
        Settings::MsgBox("You should choose at least one field as match condition!");
        return;
    }
    result_ = true;
    CancelModal();
    close();
}

void FilterController::OnCancel(View* /*sender*/)
{
    result_ = false;
    CancelModal();
    close();
}

void FilterController::windowDidLoad(Interface& interface)
{
    btnFilterNickname_ = &interface.checkBox("btnFilterNickname");
    btnFilterFirstname_ = &interface.checkBox("btnFilterFirstname");
    btnFilterLastname_ = &interface.checkBox("btnFilterLastname");
    btnFilterHome_ = &interface.checkBox("btnFilterHome");
    btnFilterWork_ = &interface.checkBox("btnFilterWork");
    btnFilterMobile_ = &interface.checkBox("btnFilterMobile");

    interface.command("OnCheckBoxes").setHandler([this](View* sender) { OnCheckBoxes(sender); });
    interface.command("OnOkay").setHandler([this](View* sender) { OnOkay(sender); });
    interface.command("OnCancel").setHandler([this](View* sender) { OnCancel(sender); });

    const auto& settings = Settings::settings();
    Check(*btnFilterNickname_, settings.filterNickname());
    Check(*btnFilterFirstname_, settings.filterFirstname());
    Check(*btnFilterLastname_, settings.filterLastname());
    Check(*btnFilterHome_, settings.filterHome());
    Check(*btnFilterWork_, settings.filterWork());
    Check(*btnFilterMobile_, settings.filterMobile());
}

}  // namespace dunmora
