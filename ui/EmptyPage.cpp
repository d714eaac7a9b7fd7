#include "ui/EmptyPage.h"

#include "platform/AddressBook.h"
#include "platform/Button.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/TableView.h"
#include "platform/TextField.h"
#include "text/DisplayText.h"

#include <cstddef>
#include <vector>

namespace dunmora {

namespace {

/// “Friends”, “Work” and “Club”.
std::string listOf(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) {
            text += i + 1 == names.size() ? " and " : ", ";
        }
        text += "“" + windowText(names[i]) + "”";
    }
    return text;
}

/// A book that the program opened by itself is nothing that the user would call "this one".
std::string emptyBookTitle()
{
    const auto* const book = Platform::current().addressBook;
    const auto names = book != nullptr ? book->notes().books : std::vector<std::string>();
    if (names.empty()) {
        return "This address book is empty";
    }
    return names.size() == 1 ? "The address book " + listOf(names) + " is empty"
                             : "The address books " + listOf(names) + " are empty";
}

}  // namespace

EmptyPage::EmptyPage(Interface& mainInterface)
    : vwEmpty_(&mainInterface.view("vwEmpty")),
      txtEmptyTitle_(&mainInterface.textField("txtEmptyTitle")),
      txtEmptyHint_(&mainInterface.textField("txtEmptyHint")),
      btnEmptyOpen_(&mainInterface.button("btnEmptyOpen")),
      vwReview_(&mainInterface.view("vwReview")),
      tableContacts_(&mainInterface.tableView("tableContacts"))
{
}

void EmptyPage::setReason(std::string_view reason)
{
    reason_ = windowText(reason);
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
                 afterReason(
                     "Open a vCard file or a folder of vCard files, or drop one on this window."),
                 Offer::AnotherBook);
        break;
    case Emptiness::NoPeople:
        setTexts(emptyBookTitle(), "Open another one to look for duplicates.", Offer::AnotherBook);
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
                 afterReason("Choose Reload to try again, or open another one."),
                 Offer::AnotherBook);
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

std::string EmptyPage::afterReason(std::string_view advice) const
{
    return reason_ + (reason_.empty() ? "" : "\n") + std::string(advice);
}

void EmptyPage::setTexts(std::string_view title, std::string_view hint, Offer offer)
{
    txtEmptyTitle_->setStringValue(title);
    txtEmptyHint_->setStringValue(hint);
    txtEmptyHint_->setHidden(hint.empty());
    btnEmptyOpen_->setHidden(offer == Offer::Nothing);
}

}  // namespace dunmora
