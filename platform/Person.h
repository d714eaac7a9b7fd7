#pragma once

#include "platform/PersonSource.h"

#include <chrono>
#include <optional>
#include <span>
#include <string_view>

namespace dunmora {

/// One entry of a person's list of phone numbers. A label is raw, as the address book stores it
/// (`_$!<Home>!$_`, "iPhone"); it can be missing.
struct LabelledPhone {
    std::optional<std::string_view> label;
    std::string_view value;
};

/// A person's phone numbers in the address book's own order.
using PhoneList = std::span<const LabelledPhone>;

/// One person of an address book: views into what the book holds in memory, so that listing a
/// million people copies no text. All text is UTF-8. A value that the book does not have is
/// missing.
///
/// The uid is never missing, and two people of one book never share it, because a deletion
/// identifies people by it alone. A book whose source has no uids generates them, the same on every
/// run.
struct Person {
    std::string_view uid;
    std::optional<std::string_view> firstName;
    std::optional<std::string_view> lastName;
    std::optional<std::string_view> nickname;
    std::optional<std::chrono::sys_seconds> modified;
    std::optional<PhoneList> phones;
    /// The book or file that the person is from; never null in a listing.
    const PersonSource* source = nullptr;
};

}  // namespace dunmora
