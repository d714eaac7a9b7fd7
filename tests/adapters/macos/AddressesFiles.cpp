#include "tests/adapters/macos/AddressesBook.h"

#include <algorithm>
#include <sstream>

namespace dunmora::test {

namespace {

constexpr auto kEnding = ".mfaddr";
constexpr auto kLock = "LOCK";

std::string quoted(const std::string& text)
{
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + "\"";
}

std::string entry(const std::string& key, const std::string& value)
{
    return key + " = " + value + ";\n";
}

/// The person as Addresses stores one: an old-style property list.
std::string propertyList(const FakePerson& person)
{
    std::string list = "{\n" + entry("Type", "Person") + entry("UID", quoted(person.uid));
    if (person.firstName) {
        list += entry("FirstName", quoted(*person.firstName));
    }
    if (person.lastName) {
        list += entry("LastName", quoted(*person.lastName));
    }
    if (person.nickname) {
        list += entry("Nickname", quoted(*person.nickname));
    }
    if (person.phones) {
        std::string phones;
        for (std::size_t i = 0; i < person.phones->size(); ++i) {
            const auto& phone = (*person.phones)[i];
            phones += (i > 0 ? ", {" : "{") + entry("ID", std::to_string(i));
            phones += phone.label ? entry("Label", quoted(*phone.label)) : "";
            phones += entry("Value", quoted(phone.value)) + "}";
        }
        list += entry("Phone", "(" + phones + ")");
    }
    return list + "}\n";
}

}  // namespace

void AddressesBook::hold(const std::vector<FakePerson>& people)
{
    for (const auto& name : namesIn(folder())) {
        std::filesystem::remove(folder() / name);
    }
    state_->order.clear();
    for (const auto& person : people) {
        write(fileOf(person.uid), propertyList(person));
        state_->order.push_back(person.uid);
    }
}

void AddressesBook::add(const FakePerson& person)
{
    write(fileOf(person.uid), propertyList(person));
    std::erase(state_->order, person.uid);
    state_->order.push_back(person.uid);
    forget(person.uid);
}

void AddressesBook::addGroup(const std::string& name, const std::string& uid)
{
    write(fileOf(name), "{\n" + entry("Type", "Group") + entry("UID", quoted(name)) +
                            entry("GroupName", quoted(name)) +
                            entry("Members", "(" + quoted(uid) + ")") + "}\n");
}

void AddressesBook::take(const std::string& uid)
{
    std::filesystem::remove(fileOf(uid));
}

void AddressesBook::damage(const std::string& uid)
{
    write(fileOf(uid), "{ this is no property list");
}

std::vector<std::string> AddressesBook::uidsSeenByOthers() const
{
    auto uids = state_->order;
    std::erase_if(uids,
                  [&](const std::string& uid) { return !std::filesystem::exists(fileOf(uid)); });
    return uids;
}

std::string AddressesBook::trace() const
{
    std::ostringstream trace;
    for (const auto& name : namesIn(folder())) {
        trace << name << ' '
              << std::filesystem::last_write_time(folder() / name).time_since_epoch().count()
              << '\n';
    }
    // The folder's time also shows a save that wrote nothing: it creates and removes the lock file.
    trace << std::filesystem::last_write_time(folder()).time_since_epoch().count();
    return trace.str();
}

void AddressesBook::breakSaving() const
{
    write(folder() / kLock, "1");
}

void AddressesBook::mendSaving() const
{
    std::filesystem::remove(folder() / kLock);
}

std::filesystem::path AddressesBook::fileOf(const std::string& uid) const
{
    return folder() / (uid + kEnding);
}

}  // namespace dunmora::test
