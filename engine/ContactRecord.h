#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace dunmora {

/// The keys of a contact record; they are the review table's column identifiers, too.
inline constexpr std::string_view kContactUid = "uid";
inline constexpr std::string_view kContactFirstName = "fname";
inline constexpr std::string_view kContactLastName = "lname";
inline constexpr std::string_view kContactNickname = "nickname";
inline constexpr std::string_view kContactHome = "home";
inline constexpr std::string_view kContactWork = "work";
inline constexpr std::string_view kContactMobile = "mobile";
inline constexpr std::string_view kContactModified = "modified";
inline constexpr std::string_view kContactCheck = "check";

/// A value of a contact record. A text is a view that ends when the record changes.
using ContactValue = std::variant<std::string_view, std::chrono::sys_seconds, bool>;

/// One person as the review shows it: a dictionary with the nine keys above, kept compactly. The
/// seven texts are always there; "modified" and "check" are there once stored.
///
/// Thread: as a standard container.
class ContactRecord final {
public:
    static constexpr std::size_t kTextCount = 7;

    /// All texts are empty.
    ContactRecord() = default;

    /// The texts in the order of the keys above.
    explicit ContactRecord(const std::array<std::string_view, kTextCount>& texts);

    /// The value under the key; none when it was never stored or the record has no such key.
    std::optional<ContactValue> objectForKey(std::string_view key) const;

    /// Stores the value under the key. A key that a record does not have, or a value of another
    /// kind than the key's, is ignored.
    void setObject(const ContactValue& value, std::string_view key);

    /// The text under one of the seven text keys; "" for every other key.
    std::string_view text(std::string_view key) const;

    /// The value under "check"; false when there is none.
    bool isChecked() const { return check_.value_or(false); }

private:
    std::size_t textBegin(std::size_t index) const { return index == 0 ? 0 : textEnds_[index - 1]; }
    std::string_view textAt(std::size_t index) const;

    // The texts one after the other, and where each ends: a million records are walked faster when
    // each has one piece of memory instead of seven.
    std::string texts_;
    std::array<std::uint32_t, kTextCount> textEnds_{};
    std::optional<std::chrono::sys_seconds> modified_;
    std::optional<bool> check_;
};

}  // namespace dunmora
