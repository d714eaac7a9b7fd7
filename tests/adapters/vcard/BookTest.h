#pragma once

#include "adapters/vcard/VCardAddressBook.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace dunmora::test {

/// The card of a person with this UID and these line ends.
std::string card(std::string_view uid, std::string_view lineEnd = "\r\n");

/// A vCard text as UTF-16, without a byte-order mark.
std::string utf16Little(std::string_view ascii);
std::string utf16Big(std::string_view ascii);

std::vector<std::string> uidsOf(std::span<const Person> people);
/// The uids of the people whom a new `VCardAddressBook` lists.
std::vector<std::string> uidsIn(const std::filesystem::path& book);

/// The remarks of a new reading.
std::vector<std::string> remarksOf(const std::filesystem::path& book);

/// Calls `removeRecord` for those of the book's people who have these uids.
void ask(AddressBook& book, const std::vector<std::string>& uids);
/// Removes these people through a new `VCardAddressBook`.
void removeFrom(const std::filesystem::path& book, const std::vector<std::string>& uids);

/// Removes the attribute by which a later run recognizes what a deletion has left, so that only the
/// book that made the deletion knows it.
void removeMark(const std::filesystem::path& file);

/// Differs after any change of the file: its inode, size and times.
std::string traceOf(const std::filesystem::path& path);

/// Writes the file once its change time will differ: many file systems round times to a few
/// milliseconds.
void writeLater(const std::filesystem::path& path, std::string_view content);

/// A temporary folder, which is the book or contains it.
class BookTest : public FileTest {
protected:
    std::filesystem::path file() const { return path("book.vcf"); }
};

}  // namespace dunmora::test
