#include "ui/FilterController.h"

#include "base/ContactFields.h"
#include "base/Settings.h"
#include "platform/CheckBox.h"
#include "review/ReviewTexts.h"
#include "ui/Check.h"

namespace dunmora {

FilterController::FilterController() : ModalController("FilterWindow") {}

bool FilterController::showModal()
{
    DoModal();
    return result_;
}

void FilterController::OnCheckBoxes(View* sender)
{
    for (const auto& box : boxes_) {
        if (&box.checkBox == sender) {
            Settings::settings().setOn(box.preference, box.checkBox.state() == CheckState::On);
            return;
        }
    }
}

void FilterController::OnOkay(View* /*sender*/)
{
    const auto& settings = Settings::settings();
    static_assert(kMatchFields.size() == 6, "the confirmation asks for every match field");
    // Every click has been stored, so the stored flags are what the boxes show.
    const bool anyField = settings.filterNickname() || settings.filterFirstname() ||
                          settings.filterLastname() || settings.filterWork() ||
                          settings.filterHome() || settings.filterMobile();
    if (!anyField) {
        Settings::MsgBox(kNoMatchField);
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
    interface.command("OnCheckBoxes").setHandler([this](View* sender) { OnCheckBoxes(sender); });
    interface.command("OnOkay").setHandler([this](View* sender) { OnOkay(sender); });
    interface.command("OnCancel").setHandler([this](View* sender) { OnCancel(sender); });

    for (const auto* const field : kMatchFields) {
        auto& checkBox = interface.checkBox(field->match->checkBox);
        boxes_.push_back({*field->match, checkBox});
        Check(checkBox, Settings::settings().isOn(*field->match));
    }
}

}  // namespace dunmora
