#pragma once

#include "adapters/vcard/Card.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/Lines.h"
#include "adapters/vcard/OrdinaryLine.h"
#include "adapters/vcard/Property.h"

#include <cstddef>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// Finds the cards of one text, line by line, by the rules of `CardReader`.
///
/// Thread: one at a time. The text and the memory must outlive the scanner.
class CardScanner final {
public:
    /// Which properties the cards keep. Skipping the others saves most of the time.
    enum class Properties { OfPerson, All };

    /// Whether ordinary lines are read in one step. The cards are the same either way: tests
    /// compare both.
    enum class OrdinaryLines { InOneStep, LikeOthers };

    CardScanner(std::string_view text, CardReader::Text kind, Properties properties,
                std::pmr::memory_resource& memory,
                OrdinaryLines ordinaryLines = OrdinaryLines::InOneStep)
        : text_(text),
          properties_(properties),
          ordinaryLines_(ordinaryLines),
          lines_(text),
          end_(text.size()),
          card_(text, kind, memory)
    {
    }

    /// Makes the scanner read only a part of the text, as if the part began between cards. The line
    /// that extends beyond `end` is read to its own end. To be called before all others.
    void select(std::size_t begin, std::size_t end)
    {
        position_ = begin;
        end_ = end;
    }

    /// Makes the cards omit ordinary lines of properties that have none of these names, which are
    /// in upper case, and that no other property depends on. Cards may still keep properties of
    /// other names. To be called before all others; the names must outlive the scanner.
    void omitOrdinaryLinesBesides(std::span<const std::string> names) { wantedNames_ = names; }

    /// Makes a scanner that has read its part continue.
    void extendTo(std::size_t end) { end_ = end; }

    /// Whether the part has been read, and a line begins at its end that is not part of a card.
    bool isBetweenCards() const { return position_ == end_ && !isOpen_; }

    /// Reads the next card that is complete. Returns whether there is one.
    bool next();

    /// Reads all cards that `next` would read, and appends the people, their ranges and hashes, and
    /// the groups.
    void readAll(CardReader::Cards& cards);

    /// The card that was read last, until the next call of `next`.
    Card& card() { return card_; }
    CardRange range() const { return range_; }

    /// The offsets of the cards that were skipped so far.
    const std::vector<std::size_t>& skipped() const { return skipped_; }

private:
    std::string_view content(const Line& line) const;
    bool isBegin(const Line& line) const;
    Line nextLine();
    Line withoutPadding(Line line) const;
    void readOutside(const Line& line);
    void beginCard(std::size_t begin);
    void readInside(const Line& line);
    bool readOrdinaryLine(const Line& line);
    bool canBeOmitted(std::string_view line, const OrdinaryHead& head) const;
    bool isContinuation(const Line& line) const;
    void readInnerBegin(const Line& line);
    void beginCardInstead(std::size_t begin);
    void readProperty(const Line& line);
    void addProperty(const RawProperty& property);
    bool nextIsIndented() const;
    Line skipContinuations(Line line, TransferEncoding transfer);
    bool breaksOffAt(const Line& line) const;
    bool isUnfoldedBase64(const Line& line, TransferEncoding transfer) const;
    void readAgent(const RawProperty& property);
    void endNestedCard(const Line& line);
    void endCard(const Line& line);

    std::string_view text_;
    Properties properties_;
    OrdinaryLines ordinaryLines_;
    // Without names, those of all properties.
    std::optional<std::span<const std::string>> wantedNames_;
    Lines lines_;
    std::size_t position_ = 0;
    std::size_t end_;
    std::vector<std::size_t> skipped_;

    // The open card, if any.
    bool isOpen_ = false;
    // The card has just ended and is complete.
    bool isComplete_ = false;
    CardRange range_;
    // A quoted-printable text in it broke off.
    bool isBrokenOff_ = false;
    // The next line is BEGIN or END where a quoted-printable text should continue.
    bool nextBreaksOff_ = false;
    // The number of open cards inside AGENT.
    std::size_t nestedCards_ = 0;
    // The last property was an AGENT whose card begins on a later line.
    bool expectsAgentCard_ = false;
    bool hasProperty_ = false;
    Card card_;
};

}  // namespace dunmora
