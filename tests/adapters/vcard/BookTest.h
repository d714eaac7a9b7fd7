#pragma once

#include "adapters/vcard/VCardAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace dunmora::test {

/// A card of a person with this UID, its lines ended like this.
std::string card(std::string_view uid, std::string_view lineEnd = "\r\n");

/// A vCard text as UTF-16, without a byte-order mark.
std::string utf16Little(std::string_view ascii);
std::string utf16Big(std::string_view ascii);

std::vector<std::string> uidsOf(std::span<const Person> people);
/// Who a new reader sees.
std::vector<std::string> uidsIn(const std::filesystem::path& book);

/// Lists the people of the book and asks for the removal of those with these uids.
void ask(AddressBook& book, const std::vector<std::string>& uids);
/// Removes these people from the book that a new reader sees.
void removeFrom(const std::filesystem::path& book, const std::vector<std::string>& uids);

/// What the PlatformError says; "nothing was thrown" where none was.
std::string failureOf(const std::function<void()>& action);

/// What tells whether a file was touched: its inode and when it last changed.
std::string traceOf(const std::filesystem::path& path);

/// Changes the file when its time of change will be another one: many file systems tell times only
/// to some milliseconds.
void writeLater(const std::filesystem::path& path, std::string_view content);

/// A temporary folder for a book that is a file in it, or a folder in it.
class BookTest : public testing::Test {
protected:
    const std::filesystem::path& folder() const { return temporary_.path(); }
    std::filesystem::path file() const { return folder() / "book.vcf"; }

    /// The message begins with the file's name and then says this.
    static std::string about(const std::filesystem::path& path, const std::string& words)
    {
        return "“" + path.string() + "” " + words;
    }

private:
    TemporaryFolder temporary_;
};

}  // namespace dunmora::test
