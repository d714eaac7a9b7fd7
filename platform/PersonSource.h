#pragma once

#include <string>

namespace dunmora {

/// The one book or file that a person is from.
struct PersonSource {
    /// Opens this book alone, where an address book is expected: the path of a file as it was
    /// reached, or a name such as "eds:UID".
    std::string address;
    /// The book's name for the user: "Family", "phone.vcf".
    std::string name;

    bool operator==(const PersonSource&) const = default;
};

}  // namespace dunmora
