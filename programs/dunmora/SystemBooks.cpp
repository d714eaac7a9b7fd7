#include "programs/dunmora/SystemBooks.h"

#include "platform/InterfaceLoader.h"
#include "platform/Menu.h"
#include "programs/dunmora/SupervisedApplication.h"
#include "text/DisplayText.h"

#include <exception>
#include <utility>

namespace dunmora {

SystemBooks::SystemBooks(Interface& mainInterface, SupervisedApplication& application, Open open)
    : application_(application),
      open_(std::move(open)),
      menuSystemBooks_(&mainInterface.menu("menuSystemBooks")),
      openAll_(&mainInterface.command("OnOpenSystemBook"))
{
    enable();
}

void SystemBooks::offer(const std::filesystem::path& name, List list)
{
    name_ = name.string();
    list_ = std::move(list);
    openAll_->setHandler([this](View* /*sender*/) { open_(kAll, name_); });
    if (list_) {
        menuSystemBooks_->setOpeningHandler([this] { OnMenuOpening(); });
    }
    enable();
}

bool SystemBooks::contains(const std::filesystem::path& path) const
{
    return !name_.empty() && path.string().starts_with(name_);
}

void SystemBooks::jobsBegan()
{
    areJobsRunning_ = true;
    enable();
}

void SystemBooks::jobsEnded()
{
    areJobsRunning_ = false;
    enable();
}

void SystemBooks::OnMenuOpening()
{
    if (isListing_ || areJobsRunning_) {
        return;
    }
    isListing_ = true;
    application_.detachBackgroundThread("ListSystemBooks", [this] { ListSystemBooks(); });
}

void SystemBooks::ListSystemBooks()
{
    std::optional<std::vector<DesktopBook>> books;
    try {
        books = list_();
    } catch (const std::exception&) {
        // The user has asked for none of them yet: the menu just offers nothing.
        books.reset();
    }
    application_.performOnMainThread([&] { listed(books); });
}

void SystemBooks::listed(const std::optional<std::vector<DesktopBook>>& books)
{
    isListing_ = false;
    isAvailable_ = books.has_value();
    std::vector<MenuEntry> entries;
    for (const auto& book : books.value_or(std::vector<DesktopBook>())) {
        const auto name = windowText(book.name);
        entries.push_back({name, [this, name, path = name_ + book.uid] { open_(name, path); }});
    }
    menuSystemBooks_->setEntries(std::move(entries));
    enable();
}

void SystemBooks::enable()
{
    openAll_->setEnabled(!areJobsRunning_);
    menuSystemBooks_->setEnabled(!name_.empty() && isAvailable_ && !areJobsRunning_);
}

}  // namespace dunmora
