#pragma once

#include <memory>

namespace dunmora {

class AddressBook;
class CardSource;

/// An address book that a program has opened. Usually one object implements both ports. Both are
/// null while no book is open, and `cardSource` alone when the book has no cards to back up.
struct OpenedBook {
    std::shared_ptr<AddressBook> addressBook;
    std::shared_ptr<CardSource> cardSource;
};

}  // namespace dunmora
