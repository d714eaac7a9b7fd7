#include "ui/EmptyPage.h"

#include "platform/Button.h"
#include "platform/InterfaceLoader.h"
#include "platform/TableView.h"
#include "platform/TextField.h"

namespace dunmora {

EmptyPage::EmptyPage(Interface& mainInterface)
    : vwEmpty_(&mainInterface.view("vwEmpty")),
      txtEmptyTitle_(&mainInterface.textField("txtEmptyTitle")),
      txtEmptyHint_(&mainInterface.textField("txtEmptyHint")),
      btnEmptyOpen_(&mainInterface.button("btnEmptyOpen")),
      vwReview_(&mainInterface.view("vwReview")),
      tableContacts_(&mainInterface.tableView("tableContacts"))
{
}

void EmptyPage::show(Emptiness emptiness)
{
    switch (emptiness) {
    case Emptiness::NotSearched:
        setTexts("Not searched yet",
                 "Choose Reload to read the address book and look for duplicates.",
                 Offer::AnotherBook);
        break;
    case Emptiness::Working:
        // The progress window says the rest.
        setTexts("Looking for duplicates…", "", Offer::Nothing);
        break;
    case Emptiness::NoBook:
        setTexts("No address book is open",
                 "Open a vCard file or a folder of vCard files, or drop one on this window.",
                 Offer::AnotherBook);
        break;
    case Emptiness::NoPeople:
        setTexts("This address book is empty", "Open another one to look for duplicates.",
                 Offer::AnotherBook);
        break;
    case Emptiness::NoDuplicates:
        setTexts("No duplicates found", "Choose Edit > Match Fields… to compare other fields.",
                 Offer::AnotherBook);
        break;
    case Emptiness::NoneLeft:
        setTexts("No duplicates left",
                 "Choose Reload to search again, with the same fields or others.",
                 Offer::AnotherBook);
        break;
    case Emptiness::Cancelled:
        setTexts("The search was cancelled", "Choose Reload to look for duplicates.",
                 Offer::Nothing);
        break;
    case Emptiness::LoadFailed:
        setTexts("The address book could not be read",
                 "Choose Reload to try again, or open another one.", Offer::AnotherBook);
        break;
    case Emptiness::SearchFailed:
        setTexts("The search failed", "Choose Reload to try again.", Offer::Nothing);
        break;
    }
    tableContacts_->setHidden(true);
    vwReview_->setHidden(true);
    vwEmpty_->setHidden(false);
}

void EmptyPage::hide()
{
    vwEmpty_->setHidden(true);
    vwReview_->setHidden(false);
    tableContacts_->setHidden(false);
}

void EmptyPage::setTexts(std::string_view title, std::string_view hint, Offer offer)
{
    txtEmptyTitle_->setStringValue(title);
    txtEmptyHint_->setStringValue(hint);
    txtEmptyHint_->setHidden(hint.empty());
    btnEmptyOpen_->setHidden(offer == Offer::Nothing);
}

}  // namespace dunmora
