#include "tests/adapters/vcard/BookTest.h"

#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <utility>

namespace dunmora::test {

std::string card(std::string_view uid, std::string_view lineEnd)
{
    std::string text;
    for (const auto& line :
         {std::string("BEGIN:VCARD"), std::string("VERSION:3.0"), "UID:" + std::string(uid),
          "N:Lee;" + std::string(uid), std::string("END:VCARD")}) {
        text += line;
        text += lineEnd;
    }
    return text;
}

std::string utf16Little(std::string_view ascii)
{
    std::string text;
    for (const char c : ascii) {
        text += c;
        text += '\0';
    }
    return text;
}

std::string utf16Big(std::string_view ascii)
{
    std::string text;
    for (const char c : ascii) {
        text += '\0';
        text += c;
    }
    return text;
}

std::vector<std::string> uidsOf(std::span<const Person> people)
{
    std::vector<std::string> uids;
    for (const auto& person : people) {
        uids.emplace_back(person.uid);
    }
    return uids;
}

std::vector<std::string> uidsIn(const std::filesystem::path& book)
{
    VCardAddressBook reader(book);
    return uidsOf(reader.readPeople());
}

std::vector<std::string> remarksOf(const std::filesystem::path& book)
{
    VCardAddressBook reader(book);
    reader.readPeople();
    return reader.notes().remarks;
}

void ask(AddressBook& book, const std::vector<std::string>& uids)
{
    for (const auto& person : book.people()) {
        if (std::find(uids.begin(), uids.end(), person.uid) != uids.end()) {
            book.removeRecord(person);
        }
    }
}

void removeFrom(const std::filesystem::path& book, const std::vector<std::string>& uids)
{
    VCardAddressBook reader(book);
    ask(reader, uids);
    reader.save();
}

void removeMark(const std::filesystem::path& file)
{
    // It has none where the file system keeps no attributes.
    static_cast<void>(removexattr(file.c_str(), "user.dunmora.remainder"));
}

void writeLater(const std::filesystem::path& path, std::string_view content)
{
    const TemporaryFolder other;
    const auto clock = other.path() / "clock";
    const auto changeOf = [](const std::filesystem::path& file) {
        struct stat status {};
        EXPECT_EQ(stat(file.c_str(), &status), 0);
        return std::pair(status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
    };
    do {
        write(clock, "tick");
    } while (changeOf(clock) <= changeOf(path));
    write(path, content);
}

std::string traceOf(const std::filesystem::path& path)
{
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        return "no file";
    }
    return std::to_string(status.st_ino) + " " + std::to_string(status.st_size) + " " +
           std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec) +
           " " + std::to_string(status.st_ctim.tv_sec) + "." +
           std::to_string(status.st_ctim.tv_nsec);
}

}  // namespace dunmora::test
