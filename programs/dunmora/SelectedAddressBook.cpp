#include "programs/dunmora/SelectedAddressBook.h"

#include "programs/dunmora/NoAddressBook.h"

namespace dunmora {

SelectedAddressBook::SelectedAddressBook() : book_(std::make_unique<NoAddressBook>()) {}

SelectedAddressBook::~SelectedAddressBook() = default;

}  // namespace dunmora
