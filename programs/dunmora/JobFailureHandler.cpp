#include "programs/dunmora/JobFailureHandler.h"

#include "base/JobThreads.h"
#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "platform/TableView.h"
#include "ui/AppData.h"
#include "ui/ContactsController.h"
#include "ui/ProgressWindowController.h"
#include "ui/ReviewController.h"

namespace dunmora {

void JobFailureHandler::jobFailed(std::string_view name, const std::string& text)
{
    Settings::MsgBox(text);
    auto& app = AppData::app();
    if (app.progress()) {
        app.progress()->close();
    }
    app.setProgress(nullptr);
    ContactsParser::parser().reset();
    // A deletion has disabled it, and only an enabled table asks how many rows there are.
    table_.setEnabled(true);
    table_.reloadData();
    review_.jobFailed(name);
    if (name == kThreadDeleteCheckedContacts) {
        contacts_.OnReload(nullptr);
    }
}

}  // namespace dunmora
