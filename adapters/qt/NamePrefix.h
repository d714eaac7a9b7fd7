#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace dunmora {

/// The first letters of a name, upper and lower case being the same.
class NamePrefix final {
public:
    explicit NamePrefix(const QString& typed);

    /// Whether the name, in UTF-8, begins with these letters.
    bool begins(std::string_view name) const;

private:
    QString folded_;
    /// The same in ASCII; empty when it is not ASCII.
    std::string foldedAscii_;
};

}  // namespace dunmora
