#include "programs/dunmora/NoAddressBook.h"

#include "platform/PlatformError.h"

namespace dunmora {

namespace {

[[noreturn]] void refuse()
{
    throw PlatformError(
        "No address book is open. Choose File > Open… to open a vCard file or a folder of them.");
}

}  // namespace

std::span<const Person> NoAddressBook::readPeople()
{
    refuse();
}

std::span<const Person> NoAddressBook::people()
{
    refuse();
}

void NoAddressBook::removeRecord(const Person& /*person*/)
{
    refuse();
}

void NoAddressBook::save()
{
    refuse();
}

void NoAddressBook::checkBackUp(std::span<const Person* const> /*people*/) const
{
    refuse();
}

void NoAddressBook::backUp(std::span<const Person* const> /*people*/,
                           const std::filesystem::path& /*file*/)
{
    refuse();
}

}  // namespace dunmora
