#pragma once

#include <memory>

namespace dunmora {

class AddressBook;
class CardRestorer;
class CardSource;

/// An address book that a program has opened. Usually one object implements all ports. All are null
/// while no book is open, `cardSource` alone when the book has no cards to back up, and
/// `cardRestorer` alone when nothing can be put back into it.
struct OpenedBook {
    std::shared_ptr<AddressBook> addressBook;
    std::shared_ptr<CardSource> cardSource;
    std::shared_ptr<CardRestorer> cardRestorer = nullptr;
};

}  // namespace dunmora
