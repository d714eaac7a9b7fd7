#include "ui/DeletionGuard.h"

#include "platform/Alert.h"
#include "platform/Platform.h"
#include "review/DeletionDoubts.h"
#include "ui/GroupedNumber.h"

namespace dunmora {

DeletionDecision decideOnDeletion(const ContactsParser& engine, const GroupWarnings& warnings)
{
    const auto doubts = deletionDoubts(engine, warnings, Platform::current().cardSource);
    if (!doubts.areAny()) {
        return DeletionDecision::Delete;
    }
    switch (Platform::current().alert.runModal(doubtQuestion(doubts, groupedNumber))) {
    case Alert::kDefaultButton:
        return DeletionDecision::LeaveOut;
    case Alert::kOtherButton:
        return DeletionDecision::Delete;
    default:
        return DeletionDecision::Cancel;
    }
}

}  // namespace dunmora
