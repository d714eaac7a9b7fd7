#pragma once

#include "platform/Person.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace dunmora {

/// The range of a card in its text: from the beginning of its BEGIN line to the end of its END
/// line, line end included.
struct CardRange {
    std::size_t begin = 0;
    std::size_t end = 0;
    /// The size of the line end after END; 0 when the text ends without one.
    std::size_t lineEndSize = 0;
};

/// Reads people from vCard 2.1 (versit), 3.0 (RFC 2426) and 4.0 (RFC 6350) text, as real address
/// books write it.
///
/// Text between cards is ignored. A card is a person when it has BEGIN, END and at least one
/// property between them; groups and lists are not people. A card nested as the value of AGENT is
/// part of the outer card.
///
/// A card that breaks off never takes the next one with it: a BEGIN line begins a card even where a
/// quoted-printable text should continue. Only a fold, which is unambiguous (RFC 6350 §3.2), and
/// AGENT make it part of the open card.
///
/// Thread: any, one at a time; a large text is read on several at once. The people hold views into
/// the texts and into the reader.
class CardReader final {
public:
    /// How a text is encoded.
    enum class Text {
        /// UTF-8, or any superset of ASCII that CHARSET parameters name value by value.
        Bytes,
        /// UTF-8 throughout; CHARSET parameters apply only to quoted-printable and base64 values.
        Utf8,
    };

    struct Cards {
        /// The people, in the order of the text; `uid` is empty when the card has no UID.
        std::vector<Person> people;
        /// The range of each person's card, in the same order.
        std::vector<CardRange> ranges;
        /// The offsets of cards that were skipped because they break off, or have no END or no
        /// property.
        std::vector<std::size_t> skipped;
        /// The ranges of group and list cards.
        std::vector<CardRange> groups;
        /// The hash of each person's `uid` by which a `TextIndex` finds it, in the same order;
        /// empty unless `hashesUids`. Hashing a text that has just been read is cheap, because it
        /// is still in the processor's cache.
        std::vector<std::uint64_t> uidHashes;
        bool hashesUids = false;
    };

    /// How texts are read; the result is the same.
    struct Method {
        /// The most threads that read a text; 0 means one for each processor.
        std::size_t threads;
        /// A larger text is read in pieces of about this many bytes, at least 1.
        std::size_t pieceSize;
    };

    /// Small pieces stay in the processor's cache until they are appended; much smaller ones, and
    /// threads for a smaller text, cost more than they gain.
    static constexpr Method kUsualMethod{0, std::size_t{1} << 20U};

    CardReader() = default;
    explicit CardReader(Method method) : method_(method) {}
    ~CardReader() = default;
    CardReader(const CardReader&) = delete;
    CardReader& operator=(const CardReader&) = delete;

    /// Appends the cards of a text, which must outlive the people.
    void read(std::string_view text, Text kind, Cards& cards);

private:
    bool readInPieces(std::string_view text, Text kind, Cards& cards);

    Method method_ = kUsualMethod;
    // Hold decoded text and the lists of phones.
    std::pmr::monotonic_buffer_resource memory_;
    std::deque<std::pmr::monotonic_buffer_resource> pieceMemories_;
};

}  // namespace dunmora
