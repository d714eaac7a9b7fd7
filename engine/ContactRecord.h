#pragma once

#include "base/ContactFields.h"
#include "engine/TextArena.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
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

    /// Copies the texts into memory of its own.
    explicit ContactRecord(const Texts& texts);

    /// Copies the texts into the arena, which must outlive the record.
    ContactRecord(const Texts& texts, TextArena& arena);

    ~ContactRecord() { release(); }
    /// The copy has the texts in memory of its own.
    ContactRecord(const ContactRecord& other);
    ContactRecord& operator=(const ContactRecord& other);
    /// The other record is empty afterwards.
    ContactRecord(ContactRecord&& other) noexcept : data_(std::exchange(other.data_, Data())) {}
    ContactRecord& operator=(ContactRecord&& other) noexcept;

    /// The value under the key; nullopt when it was never stored or the record has no such key.
    std::optional<ContactValue> objectForKey(std::string_view key) const;

    /// Stores the value under the key. Ignores an unknown key, and a value of another type than the
    /// field's.
    void setObject(const ContactValue& value, std::string_view key);

    /// The text under the key of a text field; "" for every other key.
    std::string_view text(std::string_view key) const;

    /// The text of the field that has this place in `kTextFields`.
    std::string_view textAt(std::size_t place) const
    {
        const auto begin = place == 0 ? 0 : data_.textEnds[place - 1];
        return {data_.texts + begin, data_.textEnds[place] - begin};
    }

    /// The value under "check"; false when there is none.
    bool isChecked() const { return data_.isChecked; }

    /// Stores the value under "check".
    void setChecked(bool isChecked)
    {
        data_.hasCheck = true;
        data_.isChecked = isChecked;
    }

private:
    /// 48 bytes: an address book may have a million people.
    struct Data {
        // Back to back. Only a record that was built or changed by itself owns their memory.
        const char* texts = "";
        std::chrono::sys_seconds modified{};
        std::array<std::uint32_t, kTextFields.size()> textEnds{};
        bool ownsTexts = false;
        bool hasModified = false;
        bool hasCheck = false;
        bool isChecked = false;
    };

    Texts texts() const;
    /// Copies the texts to `memory`, which becomes the record's.
    void setTexts(const Texts& texts, char* memory);
    /// Copies the date and the mark.
    void copyRest(const ContactRecord& other);
    void release() noexcept;

    Data data_;
};

}  // namespace dunmora
