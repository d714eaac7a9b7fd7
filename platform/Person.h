#pragma once

#include "platform/CompactOptional.h"
#include "platform/PersonSource.h"

#include <chrono>
#include <cstddef>
#include <span>
#include <string_view>

namespace dunmora {

/// A view of nothing stands for a missing text. The empty text has an address.
struct MissingText {
    static constexpr std::string_view value() { return {}; }
    static constexpr bool is(std::string_view text) { return text.data() == nullptr; }
    static constexpr std::string_view unlike(std::string_view text)
    {
        return is(text) ? std::string_view("") : text;
    }
};

/// A text that can be missing, which is not the same as empty.
using OptionalText = CompactOptional<std::string_view, MissingText>;

/// The earliest time that can be written, 292 billion years ago, stands for a missing one.
struct MissingTime {
    static constexpr std::chrono::sys_seconds value() { return std::chrono::sys_seconds::min(); }
    static constexpr bool is(std::chrono::sys_seconds time) { return time == value(); }
    static constexpr std::chrono::sys_seconds unlike(std::chrono::sys_seconds time) { return time; }
};

/// A time that can be missing.
using OptionalTime = CompactOptional<std::chrono::sys_seconds, MissingTime>;

/// One entry of a person's list of phone numbers. A label is raw, as the address book stores it
/// (`_$!<Home>!$_`, "iPhone"); it can be missing.
struct LabelledPhone {
    OptionalText label;
    std::string_view value;
};

/// A person's phone numbers in the address book's own order.
using PhoneList = std::span<const LabelledPhone>;

/// A list without an address stands for a missing one.
struct MissingPhones {
    static constexpr PhoneList value() { return {}; }
    static constexpr bool is(PhoneList phones) { return phones.data() == nullptr; }
    static constexpr PhoneList unlike(PhoneList phones)
    {
        return is(phones) ? PhoneList(&kAddress, std::size_t{0}) : phones;
    }

private:
    static constexpr LabelledPhone kAddress{};
};

/// A list that can be missing, which is not the same as empty.
using OptionalPhones = CompactOptional<PhoneList, MissingPhones>;

/// One person of an address book: views into what the book holds in memory, so that listing a
/// million people copies no text. All text is UTF-8. A value that the book does not have is
/// missing.
///
/// The uid is never missing, and two people of one book never share it, because a deletion
/// identifies people by it alone. A book whose source has no uids generates them, the same on every
/// run.
struct Person {
    std::string_view uid;
    OptionalText firstName;
    OptionalText lastName;
    OptionalText nickname;
    OptionalTime modified;
    OptionalPhones phones;
    /// The book or file that the person is from; never null in a listing.
    const PersonSource* source = nullptr;
};

}  // namespace dunmora
