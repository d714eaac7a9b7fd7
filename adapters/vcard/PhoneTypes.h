#pragma once

#include <optional>
#include <string_view>

namespace dunmora {

/// Maps the TYPEs of one TEL property to a label in the raw form that macOS stores, such as
/// `_$!<Home>!$_`.
///
/// Thread: any, one at a time. Errors: none.
class PhoneTypes final {
public:
    /// Adds the comma-separated types of a TYPE parameter or a bare vCard 2.1 parameter, in any
    /// case. The text must outlive the label.
    void add(std::string_view types);

    /// Returns the label, or nothing when no type describes the number's place or device.
    std::optional<std::string_view> label() const;

private:
    void addOne(std::string_view type);

    bool home_ = false;
    bool work_ = false;
    bool cell_ = false;
    bool fax_ = false;
    bool pager_ = false;
    bool iPhone_ = false;
    bool main_ = false;
    bool other_ = false;
    // The first type that is not one of the above.
    std::optional<std::string_view> unknown_;
};

}  // namespace dunmora
