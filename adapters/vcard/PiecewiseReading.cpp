#include "adapters/vcard/PiecewiseReading.h"

#include "text/SideBySide.h"

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

template <typename T>
void appendAll(std::vector<T>& list, const std::vector<T>& more)
{
    list.insert(list.end(), more.begin(), more.end());
}

/// Makes room for a part of what the list will hold in the end, which is `expected` more, so that
/// it is seldom copied. Nothing is lost when fewer come: the system provides pages as they are
/// used.
template <typename T>
void makeRoom(std::vector<T>& list, std::size_t part, std::size_t expected)
{
    if (list.size() + part > list.capacity()) {
        list.reserve(std::max(list.size() + expected, 2 * list.capacity()));
    }
}

}  // namespace

std::vector<std::size_t> pieceEnds(std::string_view text, std::size_t pieceSize)
{
    // After a line feed a line begins, whatever is before it.
    constexpr std::string_view kLineBreakAndBegin = "\nBEGIN:VCARD";
    std::vector<std::size_t> ends;
    std::size_t begin = 0;
    while (text.size() - begin > pieceSize) {
        const auto found = text.find(kLineBreakAndBegin, begin + pieceSize - 1);
        if (found == std::string_view::npos) {
            break;
        }
        begin = found + 1;
        ends.push_back(begin);
    }
    ends.push_back(text.size());
    return ends;
}

PiecewiseReading::PiecewiseReading(std::string_view text, CardReader::Text kind,
                                   const std::vector<std::size_t>& ends, Memories& memories,
                                   CardReader::Cards& cards)
    : text_(text), kind_(kind), pieces_(ends.size()), cards_(cards), isRead_(ends.size())
{
    std::size_t begin = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        // People usually need less than that beside their text, and unused pages cost nothing.
        const auto memorySize = (ends[i] - begin) / 4 + 1;
        pieces_[i].begin = begin;
        pieces_[i].end = ends[i];
        pieces_[i].memory = &memories.emplace_back(memorySize);
        begin = ends[i];
    }
}

void PiecewiseReading::run(std::size_t threads)
{
    runSideBySide(pieces_.size(), threads, [this](std::size_t i) {
        read(pieces_[i]);
        {
            const std::lock_guard lock(mutex_);
            isRead_[i] = true;
        }
        appendFinished();
    });
    endCurrent();
}

void PiecewiseReading::read(Piece& piece)
{
    piece.cards = takeSpare();
    piece.scanner = std::make_unique<CardScanner>(text_, kind_, CardScanner::Properties::OfPerson,
                                                  *piece.memory);
    piece.scanner->select(piece.begin, piece.end);
    piece.scanner->readAll(piece.cards);
}

/// Appends the pieces whose turn it is. While one thread does so, the others continue to read.
void PiecewiseReading::appendFinished()
{
    std::unique_lock lock(mutex_);
    if (isAppending_) {
        return;
    }
    isAppending_ = true;
    while (appended_ < pieces_.size() && isRead_[appended_]) {
        auto& piece = pieces_[appended_];
        lock.unlock();
        append(piece);
        lock.lock();
        ++appended_;
    }
    isAppending_ = false;
}

void PiecewiseReading::append(Piece& piece)
{
    if (current_ == nullptr || current_->isBetweenCards()) {
        endCurrent();
        appendCards(piece);
        current_ = std::move(piece.scanner);
    } else {
        current_->extendTo(piece.end);
        current_->readAll(cards_);
        piece.scanner.reset();
    }
    giveBack(std::move(piece.cards));
}

void PiecewiseReading::appendCards(const Piece& piece)
{
    if (const auto count = piece.cards.people.size(); count > 0) {
        // The rest of the text is probably like this piece, or a little denser.
        const auto remaining = static_cast<double>(text_.size() - piece.begin) /
                               static_cast<double>(piece.end - piece.begin);
        constexpr double kMargin = 1.1;
        const auto expected =
            static_cast<std::size_t>(static_cast<double>(count) * remaining * kMargin) + 1;
        makeRoom(cards_.people, count, expected);
        makeRoom(cards_.ranges, count, expected);
        makeRoom(cards_.uidHashes, piece.cards.uidHashes.size(), cards_.hashesUids ? expected : 0);
    }
    appendAll(cards_.people, piece.cards.people);
    appendAll(cards_.ranges, piece.cards.ranges);
    appendAll(cards_.groups, piece.cards.groups);
    appendAll(cards_.uidHashes, piece.cards.uidHashes);
}

/// The current scanner has read all that it will read.
void PiecewiseReading::endCurrent()
{
    if (current_ != nullptr) {
        appendAll(cards_.skipped, current_->skipped());
        current_.reset();
    }
}

CardReader::Cards PiecewiseReading::takeSpare()
{
    const std::lock_guard lock(mutex_);
    if (spare_.empty()) {
        CardReader::Cards cards;
        cards.hashesUids = cards_.hashesUids;
        return cards;
    }
    auto cards = std::move(spare_.back());
    spare_.pop_back();
    return cards;
}

void PiecewiseReading::giveBack(CardReader::Cards cards)
{
    cards.people.clear();
    cards.ranges.clear();
    cards.groups.clear();
    cards.uidHashes.clear();
    const std::lock_guard lock(mutex_);
    spare_.push_back(std::move(cards));
}

}  // namespace dunmora
