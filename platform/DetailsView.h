#pragma once

#include "platform/View.h"

#include <string>
#include <vector>

namespace dunmora {

/// A line of a `DetailsView`. Its texts are plain UTF-8, and whatever an address book contains is
/// shown safely.
struct DetailsLine {
    /// What the value is: "E-mail (work)".
    std::string title;
    /// May have several lines.
    std::string value;
    /// How the value compares with another one, as the icon to show.
    enum class Sign { None, OnlyHere, Same, Different };
    Sign sign = Sign::None;
    /// The same in words.
    std::string verdict;
    /// The bytes of an image file to show as a picture; empty for a line without one. A picture
    /// that cannot be decoded is not shown.
    std::string picture;
    /// What assistive technology reads of the line.
    std::string accessibleText;
    /// Whether the title is a heading for the lines below it.
    bool isHeading = false;

    bool operator==(const DetailsLine&) const = default;
};

/// A list of titled values, one below the other. The keyboard moves from line to line and copies
/// the current value.
///
/// Thread: the main thread. Errors: none.
class DetailsView : public View {
public:
    /// Replaces all lines. The view scrolls to the first one unless the titles are the same.
    virtual void setLines(std::vector<DetailsLine> lines) = 0;
};

}  // namespace dunmora
