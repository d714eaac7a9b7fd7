#include "ui/DeletionResult.h"

#include "platform/Button.h"
#include "platform/InterfaceLoader.h"
#include "platform/TextField.h"
#include "text/Counted.h"
#include "ui/GroupedNumber.h"

namespace dunmora {

DeletionResult::DeletionResult(Interface& mainInterface)
    : vwDeletion_(&mainInterface.view("vwDeletion")),
      txtDeletion_(&mainInterface.textField("txtDeletion")),
      btnUndoDelete_(&mainInterface.button("btnUndoDelete")),
      btnSaveRemoved_(&mainInterface.button("btnSaveRemoved"))
{
    hide();
}

void DeletionResult::showDeleted(std::size_t people, bool canUndo)
{
    show(countOfPeople(people, groupedNumber) + " deleted.", canUndo);
}

void DeletionResult::showRestored(std::size_t people)
{
    show(countOfPeople(people, groupedNumber) + " restored.", false);
}

void DeletionResult::hide()
{
    vwDeletion_->setHidden(true);
}

void DeletionResult::show(const std::string& text, bool withButtons)
{
    txtDeletion_->setStringValue(text);
    btnUndoDelete_->setHidden(!withButtons);
    btnSaveRemoved_->setHidden(!withButtons);
    vwDeletion_->setHidden(false);
}

}  // namespace dunmora
