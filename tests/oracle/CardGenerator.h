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

/// A feature of a card that some readers do not support.
enum class Quirk {
    AgentCard,         // a whole card as the value of AGENT
    Base64Text,        // a name in base64, which hides the `;` between its components
    Fold21,            // a line of version 2.1 folded at a blank
    Latin1,            // CHARSET=ISO-8859-1
    MidCharacterFold,  // a fold between the bytes of one character
    SoftBreak,         // quoted-printable text on several lines
};

/// A card and the person that a reader should find in it.
struct GeneratedCard {
    enum class Kind { Person, Group, WithoutEnd, WithoutProperty };

    Kind kind = Kind::Person;
    std::string bytes;
    OraclePerson expected;
    std::optional<std::chrono::sys_seconds> modified;
    std::set<Quirk> quirks;
};

/// Generates vCard 2.1, 3.0 and 4.0 cards in the many ways in which programs write them. The same
/// seed gives the same cards on every platform.
class CardGenerator final {
public:
    explicit CardGenerator(std::uint32_t seed) : random_(seed) {}

    GeneratedCard next();

    /// Returns text to put between two cards of a file; usually empty.
    std::string junk();

    /// Returns a number below `limit`. (The standard distributions differ between libraries.)
    std::uint32_t below(std::uint32_t limit)
    {
        return static_cast<std::uint32_t>(random_() % limit);
    }
    /// Returns true with this probability.
    bool chance(std::uint32_t percent) { return below(100) < percent; }

private:
    enum class Version { V21, V30, V40 };
    /// Whether a text is one component of a value, as in N, or the whole value, as in FN.
    enum class Extent { Component, Whole };

    std::string anyCase(std::string_view word);
    std::string lineEnd();
    std::string name();
    std::string phoneNumber();
    std::string escaped(const std::string& text, Extent extent);
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
