#pragma once

#include <cstddef>

namespace dunmora {

class Command;
class Interface;
class TextField;

/// Shows how many people a deletion would remove: below the review table, and in the title of the
/// command that deletes them.
///
/// Thread: the main thread. Errors: none.
class CheckedCount final {
public:
    /// Finds its outlets in the main interface, which must outlive this.
    explicit CheckedCount(Interface& mainInterface);

    void show(std::size_t people);
    /// Shows no number, while nobody can be checked.
    void hide();

private:
    TextField* txtChecked_;
    Command* onDelete_;
};

}  // namespace dunmora
