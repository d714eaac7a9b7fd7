#pragma once

#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/CardScanner.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <memory_resource>
#include <mutex>
#include <string_view>
#include <vector>

namespace dunmora {

/// Divides a text into pieces of about this many bytes, at least 1, and returns where they end.
/// Every piece but the first begins with a BEGIN line, so that most of them can be read alone.
std::vector<std::size_t> pieceEnds(std::string_view text, std::size_t pieceSize);

/// Reads the cards of one text in pieces, several at the same time, with the result of reading it
/// from its beginning to its end.
///
/// A BEGIN line may also be part of the card before it, for example as the value of AGENT. So each
/// piece is read as if it began between cards, and what was found in it counts only if the reading
/// of all before it has ended between cards, right there. If not, that reading continues through
/// the piece.
///
/// Thread: one; `run` uses others meanwhile. Errors: std::bad_alloc.
class PiecewiseReading final {
public:
    /// A memory for each piece. The people hold views into it.
    using Memories = std::deque<std::pmr::monotonic_buffer_resource>;

    /// `ends` are those of the pieces, as from `pieceEnds`; pieces that end anywhere else are read
    /// correctly, too, but one after another. Everything must outlive this object.
    PiecewiseReading(std::string_view text, CardReader::Text kind,
                     const std::vector<std::size_t>& ends, Memories& memories,
                     CardReader::Cards& cards);

    /// Reads everything on at most this many threads. To be called once.
    void run(std::size_t threads);

private:
    struct Piece {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::pmr::memory_resource* memory = nullptr;
        // Null until the piece has been read, and again when its scanner is no longer needed.
        std::unique_ptr<CardScanner> scanner;
        CardReader::Cards cards;
    };

    void read(Piece& piece);
    void appendFinished();
    void append(Piece& piece);
    void appendCards(const Piece& piece);
    void endCurrent();
    CardReader::Cards takeSpare();
    void giveBack(CardReader::Cards cards);

    const std::string_view text_;
    const CardReader::Text kind_;
    std::vector<Piece> pieces_;

    // Used by the one thread that appends.
    CardReader::Cards& cards_;
    std::unique_ptr<CardScanner> current_;

    std::mutex mutex_;
    // Whether each piece has been read, and the number of those that were appended.
    std::vector<bool> isRead_;
    std::size_t appended_ = 0;
    bool isAppending_ = false;
    // Empty lists that keep their memory, so that the system need not provide new pages for each
    // piece.
    std::vector<CardReader::Cards> spare_;
};

}  // namespace dunmora
