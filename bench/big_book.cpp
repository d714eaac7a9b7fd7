#include "bench/big_book.h"

#include <array>
#include <string_view>

namespace dunmora::bench {

namespace {

/// The number with leading zeros.
std::string digits(std::size_t number, std::size_t count)
{
    const auto plain = std::to_string(number);
    return plain.size() < count ? std::string(count - plain.size(), '0') + plain : plain;
}

/// A name of four syllables, different for each of 160,000 people.
std::string lastName(std::size_t person)
{
    static constexpr std::array<std::string_view, 20> kSyllables = {
        "an", "ber", "co", "da", "el", "fi", "gar", "ho", "is",  "jo",
        "ka", "lun", "mo", "na", "or", "pe", "ri",  "so", "tan", "vi"};
    std::string name;
    for (int i = 0; i < 4; ++i) {
        name += kSyllables[person % kSyllables.size()];
        person /= kSyllables.size();
    }
    name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

/// First names; with 160,000 last names they make 2,560,000 people.
std::string_view firstName(std::size_t person)
{
    static constexpr std::array<std::string_view, 16> kNames = {
        "Ann",  "Bob",  "Carla", "David", "Emma",  "Frank", "Grace", "Henry",
        "Inês", "José", "Karen", "Louis", "Marta", "Nils",  "Zoë",   "Peter"};
    return kNames[(person + person / 160'000) % kNames.size()];
}

void appendCard(std::string& text, std::size_t person, std::size_t copy, bool differs)
{
    const std::string first(firstName(person));
    const auto last = lastName(person);
    const auto number = digits(person, 7);
    text += "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:7c9e6679-7425-40de-944b-" + digits(copy, 2) +
            digits(person, 10) + "\r\nN:" + last + ";" + first + ";;;\r\nFN:" + first + " " + last +
            "\r\nTEL;type=CELL;type=VOICE;type=pref:+1 " + (differs ? "558 " : "555 ") + number +
            "\r\nTEL;type=HOME;type=VOICE:+1 556 " + number + "\r\n";
    if (person % 3 == 0) {
        text += "TEL;type=WORK;type=VOICE:+1 557 " + number + "\r\n";
    }
    text += "EMAIL;type=INTERNET;type=HOME:" + last + number + "@example.com\r\nADR;type=HOME:;;" +
            std::to_string(person % 900 + 1) + " Main Street;Springfield;;" +
            digits(person % 100'000, 5) + ";\r\n" + (differs ? "NOTE:Met in Springfield\r\n" : "") +
            "REV:2024-05-01T10:00:00Z\r\nEND:VCARD\r\n";
}

}  // namespace

std::string bigBook(const BigBook& book)
{
    constexpr std::size_t kCardSize = 370;
    const auto people = book.cards * 100 / (100 + book.percentWithCopy);
    std::string text;
    text.reserve(book.cards * kCardSize);
    for (std::size_t person = 0; person < people; ++person) {
        appendCard(text, person, 0, false);
    }
    // Spread the people with a copy evenly over the book.
    const auto copies = book.cards - people;
    for (std::size_t copy = 0; copy < copies; ++copy) {
        appendCard(text, copy * people / copies, 1, book.copiesDiffer);
    }
    return text;
}

}  // namespace dunmora::bench
