#pragma once

#include "adapters/eds/ContactService.h"
#include "platform/PlatformError.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {

/// A vCard of a person with this name, without a line end, as the service returns it.
inline std::string cardNamed(const std::string& uid, const std::string& name)
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + uid + "\r\nN:" + name + ";;;;\r\nEND:VCARD";
}

/// The value of a card's UID line; empty without one.
inline std::string uidIn(const std::string& card)
{
    constexpr std::string_view kName = "\r\nUID:";
    const auto line = card.find(kName);
    if (line == std::string::npos) {
        return "";
    }
    const auto begin = line + kName.size();
    return card.substr(begin, card.find("\r\n", begin) - begin);
}

/// A desktop's address books in memory, with the faults that the test sets.
class FakeDesktopBooks final {
public:
    struct Book {
        ServiceBook description;
        BookContent content;
    };

    /// Adds a book that holds a person for each of these uids.
    Book& add(const std::string& uid, const std::vector<std::string>& people,
              std::size_t batchSize = 200)
    {
        auto& book = books.emplace_back();
        book.description = {uid, "Book " + uid, "local"};
        book.content.isWritable = true;
        book.content.batchSize = batchSize;
        for (const auto& person : people) {
            book.content.people.push_back({person, cardNamed(person, person)});
        }
        return book;
    }

    Book& book(const std::string& uid)
    {
        return *std::find_if(books.begin(), books.end(),
                             [&](const Book& each) { return each.description.uid == uid; });
    }

    std::vector<std::string> uidsIn(const std::string& uid)
    {
        std::vector<std::string> uids;
        for (const auto& person : book(uid).content.people) {
            uids.push_back(person.uid);
        }
        return uids;
    }

    /// Removes people, as a deletion or another program does. Returns whether all were there.
    bool take(const std::string& uid, const std::vector<std::string>& people)
    {
        auto& kept = book(uid).content.people;
        const auto count = kept.size();
        std::erase_if(kept, [&](const ContactText& each) {
            return std::find(people.begin(), people.end(), each.uid) != people.end();
        });
        return kept.size() + people.size() == count;
    }

    void edit(const std::string& uid, const std::string& person)
    {
        for (auto& each : book(uid).content.people) {
            if (each.uid == person) {
                each.card = cardNamed(person, "Somebody Else");
            }
        }
    }

    std::vector<Book> books;
    /// How often books were read.
    std::size_t readings = 0;
    /// The uids passed to each call of `remove`.
    std::vector<std::vector<std::string>> removals;
    /// Called before each removal; a result that it returns replaces the removal.
    std::function<std::optional<RemovalResult>(const std::vector<std::string>&)> onRemove =
        [](const auto& /*people*/) { return std::nullopt; };
    /// The cards passed to each call of `add`.
    std::vector<std::vector<std::string>> additions;
    /// Called before each addition; a result that it returns replaces the addition.
    std::function<std::optional<AdditionResult>(const std::vector<std::string>&)> onAdd =
        [](const auto& /*cards*/) { return std::nullopt; };
    /// Called by each `find` with its result.
    std::function<void(const std::string& book, BookContent& found)> onFind =
        [](const auto& /*book*/, auto& /*found*/) {};
};

/// Serves a test's address books.
class FakeContactService final : public ContactService {
public:
    explicit FakeContactService(FakeDesktopBooks& desktop) : desktop_(desktop) {}

    bool isAvailable() override { return true; }

    std::vector<ServiceBook> books() override
    {
        std::vector<ServiceBook> descriptions;
        for (const auto& book : desktop_.books) {
            descriptions.push_back(book.description);
        }
        return descriptions;
    }

    std::vector<BookContent> read(const std::vector<std::string>& books) override
    {
        ++desktop_.readings;
        std::vector<BookContent> contents;
        contents.reserve(books.size());
        for (const auto& book : books) {
            contents.push_back(desktop_.book(book).content);
        }
        return contents;
    }

    BookContent find(const std::string& book, const std::vector<std::string>& people) override
    {
        auto content = desktop_.book(book).content;
        std::erase_if(content.people, [&](const ContactText& each) {
            return std::find(people.begin(), people.end(), each.uid) == people.end();
        });
        desktop_.onFind(book, content);
        return content;
    }

    /// All or nothing, as in the desktop's own books.
    RemovalResult remove(const std::string& book, const std::vector<std::string>& people) override
    {
        desktop_.removals.push_back(people);
        if (auto answer = desktop_.onRemove(people)) {
            return *std::move(answer);
        }
        const auto before = desktop_.book(book).content.people;
        if (!desktop_.take(book, people)) {
            desktop_.book(book).content.people = before;
            return {RemovalResult::Outcome::NoSuchPerson, "Somebody was not found."};
        }
        return {};
    }

    /// All or nothing, as in the desktop's own books.
    AdditionResult add(const std::string& book, const std::vector<std::string>& cards) override
    {
        desktop_.additions.push_back(cards);
        if (auto answer = desktop_.onAdd(cards)) {
            return *std::move(answer);
        }
        auto& people = desktop_.book(book).content.people;
        const auto before = people;
        for (const auto& card : cards) {
            const auto uid = uidIn(card);
            if (std::any_of(people.begin(), people.end(),
                            [&](const ContactText& each) { return each.uid == uid; })) {
                people = before;
                return {AdditionResult::Outcome::Exists, "Somebody is there already."};
            }
            people.push_back({uid, card.substr(0, card.find_last_not_of("\r\n") + 1)});
        }
        return {};
    }

private:
    FakeDesktopBooks& desktop_;
};

}  // namespace dunmora::test
