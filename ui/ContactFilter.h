#pragma once

#include <string>
#include <string_view>

namespace dunmora {

class ContactRecord;
class TextFolding;

/// A text that the user typed to see only the contacts that contain it in a name or a telephone
/// number. Case and other differences that `TextFolding` removes do not count. First and last name
/// are read as one text, and a telephone number is found by its digits alone, too.
///
/// Thread: the main thread. Errors: none.
class ContactFilter final {
public:
    /// Blanks around the typed text do not count. `folding` must outlive the filter.
    ContactFilter(std::string_view typed, const TextFolding& folding);

    /// An empty filter matches every contact.
    bool isEmpty() const { return folded_.empty(); }

    bool matches(const ContactRecord& contact);

    /// Whether every contact that matches this filter matches `earlier`, too.
    bool narrows(const ContactFilter& earlier) const;

private:
    bool matchesText(const ContactRecord& contact);
    bool matchesDigits(const ContactRecord& contact);

    const TextFolding& folding_;
    std::string folded_;
    /// Empty unless the text could be part of a telephone number.
    std::string digits_;
    /// Kept so that a search allocates nothing for each contact.
    std::string buffer_;
};

}  // namespace dunmora
