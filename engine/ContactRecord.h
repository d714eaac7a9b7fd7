#pragma once

#include "base/ContactFields.h"
#include "engine/TextArena.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
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
        const auto begin = place == 0 ? 0 : textEnd(place - 1);
        return {data_.texts + begin, textEnd(place) - begin};
    }

    /// Stores the value under "modified".
    void setModified(std::chrono::sys_seconds time)
    {
        data_.hasModified = true;
        data_.modified = time;
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
    /// Where each text ends, counted from the beginning of the first one.
    using TextEnds = std::array<std::size_t, kTextFields.size()>;

    /// 32 bytes: an address book may have a million people.
    struct Data {
        // Back to back. Only a record that was built or changed by itself owns their memory.
        const char* texts = "";
        std::chrono::sys_seconds modified{};
        // Not used by long texts, in front of which there are `TextEnds`.
        std::array<std::uint16_t, kTextFields.size()> textEnds{};
        bool hasLongTexts : 1 = false;
        bool ownsTexts : 1 = false;
        bool hasModified : 1 = false;
        bool hasCheck : 1 = false;
        bool isChecked : 1 = false;
    };

    static TextEnds endsOf(const Texts& texts);
    /// Whether texts that end there are long ones.
    static bool areLong(const TextEnds& ends)
    {
        return ends.back() > std::numeric_limits<std::uint16_t>::max();
    }
    /// The size of the memory for texts that end there.
    static std::size_t memoryFor(const TextEnds& ends)
    {
        return (areLong(ends) ? sizeof(ends) : 0) + ends.back();
    }

    std::size_t textEnd(std::size_t place) const
    {
        return data_.hasLongTexts ? longTextEnds()[place] : data_.textEnds[place];
    }
    TextEnds longTextEnds() const;

    Texts texts() const;
    /// Copies the texts to `memory`, which has the size for them and becomes the record's.
    void setTexts(const Texts& texts, const TextEnds& ends, char* memory);
    /// Copies the date and the mark.
    void copyRest(const ContactRecord& other);
    void release() noexcept;

    Data data_;
};

}  // namespace dunmora
