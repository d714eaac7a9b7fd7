#pragma once

#include <optional>
#include <string_view>

namespace dunmora {

/// The TYPEs of one TEL property and the label that stands for them in the raw form in which macOS
/// stores labels, such as `_$!<Home>!$_`.
class PhoneTypes final {
public:
    /// Adds the text of a TYPE parameter, a list split at commas, or a bare vCard 2.1 parameter, in
    /// any case. The text must outlive the label.
    void add(std::string_view types);

    /// None when the types say nothing about whose number it is.
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
    // The first type that is none of the above.
    std::optional<std::string_view> unknown_;
};

}  // namespace dunmora
