#pragma once

#include "base/ContactFields.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace dunmora {

/// A value of a contact record. A text is a view, valid until the record changes.
using ContactValue = std::variant<std::string_view, std::chrono::sys_seconds, bool>;

/// One person as the review shows it: a dictionary with a value for each of `kContactFields`, kept
/// compactly. The texts are always present, "modified" and "check" once they are stored.
///
/// Thread: as a standard container.
class ContactRecord final {
public:
    /// A text for each of `kTextFields`, in their order.
    using Texts = std::array<std::string_view, kTextFields.size()>;

    /// All texts are empty.
    ContactRecord() = default;

    explicit ContactRecord(const Texts& texts);

    /// The value under the key; nullopt when it was never stored or the record has no such key.
    std::optional<ContactValue> objectForKey(std::string_view key) const;

    /// Stores the value under the key. Ignores an unknown key, and a value of another type than the
    /// field's.
    void setObject(const ContactValue& value, std::string_view key);

    /// The text under the key of a text field; "" for every other key.
    std::string_view text(std::string_view key) const;

    /// The value under "check"; false when there is none.
    bool isChecked() const { return check_.value_or(false); }

private:
    std::size_t textBegin(std::size_t index) const { return index == 0 ? 0 : textEnds_[index - 1]; }
    std::string_view textAt(std::size_t index) const;

    // The texts back to back, and where each ends: a million records are walked faster when each
    // has one allocation instead of seven.
    std::string texts_;
    std::array<std::uint32_t, kTextFields.size()> textEnds_{};
    std::optional<std::chrono::sys_seconds> modified_;
    std::optional<bool> check_;
};

}  // namespace dunmora
