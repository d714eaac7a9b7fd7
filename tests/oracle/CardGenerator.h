#pragma once

#include "tests/oracle/OraclePerson.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// What a card has that some readers do not follow.
enum class Quirk {
    AgentCard,         // a whole card as the value of AGENT
    Base64Text,        // a name in base64, which hides the `;` between its parts
    Fold21,            // a 2.1 line folded where it has a blank
    Latin1,            // CHARSET=ISO-8859-1
    MidCharacterFold,  // a fold between the bytes of one character
    SoftBreak,         // a quoted-printable text of several lines
};

/// One card and what its author meant by it.
struct GeneratedCard {
    enum class Kind { Person, Group, WithoutEnd, WithoutProperty };

    Kind kind = Kind::Person;
    std::string bytes;
    OraclePerson meant;
    std::optional<std::chrono::sys_seconds> modified;
    std::set<Quirk> quirks;
};

/// Makes vCard 2.1, 3.0 and 4.0 cards in the many ways in which programs write them; the same seed
/// gives the same cards on every machine.
class CardGenerator final {
public:
    explicit CardGenerator(std::uint32_t seed) : random_(seed) {}

    GeneratedCard next();

    /// What stands between two cards of a file: mostly nothing.
    std::string junk();

    /// A number below `limit`. (The standard distributions differ from library to library.)
    std::uint32_t below(std::uint32_t limit)
    {
        return static_cast<std::uint32_t>(random_() % limit);
    }
    bool chance(std::uint32_t percent) { return below(100) < percent; }

private:
    enum class Version { V21, V30, V40 };
    /// How deep a text is in a property's value: a part of N, or all of FN.
    enum class Place { Part, Whole };

    std::string anyCase(std::string_view word);
    std::string lineEnd();
    std::string name();
    std::string phoneNumber();
    std::string escaped(const std::string& text, Place place);
    std::string quotedPrintable(const std::string& text);
    std::string folded(const std::string& line);
    void addLine(const std::string& line);
    void addText(const std::string& property, const std::vector<std::string>& texts);
    void addNames();
    void addUid();
    void addModified();
    void addPhones();
    void addOther();
    std::string typeParameters(const std::vector<std::string>& types);

    std::mt19937 random_;
    Version version_ = Version::V30;
    std::string lineEnd_;
    GeneratedCard card_;
    bool followsBase64_ = false;
    std::uint32_t uidsGiven_ = 0;
};

}  // namespace dunmora::test
