#pragma once

#include <QString>

#include <span>
#include <string>
#include <string_view>

namespace dunmora {

/// A text that the user typed to see only the rows that contain it. Upper and lower case are the
/// same, and so are characters that Unicode calls compatible. A telephone number is also found by
/// its digits alone. Names that stand next to each other are read as one.
class RowFilter final {
public:
    struct Cell {
        enum class Kind { Name, Text, Phone };
        Kind kind = Kind::Text;
        /// UTF-8, or what somebody took for it.
        std::string_view text;
    };

    /// Blanks around the typed text do not count.
    explicit RowFilter(const QString& typed);

    /// Every row contains nothing.
    bool isEmpty() const { return folded_.isEmpty(); }

    bool matches(std::span<const Cell> row);

    /// Whether each row that matches this filter matches the other one too.
    bool narrows(const RowFilter& other) const;

private:
    bool matchesText(std::span<const Cell> row);
    bool matchesDigits(std::span<const Cell> row);

    QString folded_;
    /// The same in ASCII; empty when it is not ASCII.
    std::string foldedAscii_;
    /// Empty unless the text could be a part of a telephone number.
    std::string digits_;
    /// Kept so that a row costs no memory of its own.
    std::string buffer_;
};

}  // namespace dunmora
