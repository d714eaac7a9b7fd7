#include "ui/CheckedCount.h"

#include "platform/InterfaceLoader.h"
#include "platform/TextField.h"
#include "ui/GroupedNumber.h"

#include <string>

namespace dunmora {

namespace {

constexpr auto kDeleteNobody = "Delete Checked…";

}  // namespace

CheckedCount::CheckedCount(Interface& mainInterface)
    : txtChecked_(&mainInterface.textField("txtChecked")),
      onDelete_(&mainInterface.command("OnDelete"))
{
    hide();
}

void CheckedCount::show(std::size_t people)
{
    const auto count = groupedNumber(people);
    txtChecked_->setStringValue(count + " checked");
    txtChecked_->setHidden(false);
    onDelete_->setTitle(people > 0 ? "Delete " + count + " Checked…" : kDeleteNobody);
}

void CheckedCount::hide()
{
    txtChecked_->setHidden(true);
    onDelete_->setTitle(kDeleteNobody);
}

}  // namespace dunmora
