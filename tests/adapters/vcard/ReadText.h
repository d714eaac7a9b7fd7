#pragma once

#include "adapters/vcard/CardReader.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dunmora::test {

using Texts = std::vector<std::string>;

/// A text and the people that were read from it.
class ReadText {
public:
    explicit ReadText(std::string text, CardReader::Text kind = CardReader::Text::Bytes);

    const CardReader::Cards& cards() const { return cards_; }
    const std::vector<Person>& people() const { return cards_.people; }
    const Person& only() const { return cards_.people.at(0); }

    /// The bytes of the person's card.
    std::string card(std::size_t index) const;

    /// Every phone as "label=value", a missing label as "-".
    Texts phones(std::size_t index = 0) const;

    Texts firstNames() const;

private:
    std::string text_;
    CardReader reader_;
    CardReader::Cards cards_;
};

/// A card of the version with these properties, each of which ends with CR LF.
std::string card(const std::string& version, const std::string& properties);
std::string card30(const std::string& properties);
std::string card21(const std::string& properties);

/// A card with only a first name, for tests of what surrounds it.
std::string named(const std::string& firstName);

/// The lines, each followed by `end`.
std::string joined(const Texts& lines, const std::string& end);

}  // namespace dunmora::test
