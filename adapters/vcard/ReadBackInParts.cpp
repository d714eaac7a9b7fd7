#include "adapters/vcard/ReadBackInParts.h"

#include "adapters/posix/FileBytes.h"
#include "adapters/posix/PreparedFile.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/CardScanner.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/SideBySide.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <memory_resource>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kBegin = "BEGIN:VCARD";

/// Some bytes of the file, and what is expected there.
struct Part {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t firstCard = 0;
    std::size_t endCard = 0;
    // Where it begins in the pieces.
    std::size_t piece = 0;
    std::size_t inPiece = 0;
};

bool isIn(std::string_view whole, std::string_view part)
{
    // Also defined for addresses of different objects.
    const std::less<> isBefore;
    return !isBefore(part.data(), whole.data()) &&
           isBefore(part.data(), whole.data() + whole.size());
}

/// Divides the content. Returns nothing when a card is not in the pieces.
std::optional<std::vector<Part>>
partsOf(const Pieces& written, const std::vector<RemainingCard>& expected, std::size_t partSize)
{
    std::vector<Part> parts;
    Part part;
    std::size_t piece = 0;
    std::size_t pieceBegin = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto card = expected[i].bytes;
        while (piece < written.size() && !isIn(written[piece], card)) {
            pieceBegin += written[piece++].size();
        }
        if (piece == written.size()) {
            return std::nullopt;
        }
        const auto inPiece = static_cast<std::size_t>(card.data() - written[piece].data());
        const auto begin = pieceBegin + inPiece;
        if (begin - part.begin < partSize || !card.starts_with(kBegin)) {
            continue;
        }
        const auto before = inPiece > 0 ? written[piece].substr(0, inPiece) : written[piece - 1];
        if (before.ends_with('\n')) {
            part.end = begin;
            part.endCard = i;
            parts.push_back(part);
            part = {begin, 0, i, 0, piece, inPiece};
        }
    }
    part.end = sizeOf(written);
    part.endCard = expected.size();
    parts.push_back(part);
    return parts;
}

/// Memory for reading one part after another.
class Space final {
public:
    explicit Space(std::size_t partSize)
        : bytesSize_(partSize + partSize / 4 + kBegin.size()),
          bytes_(FileBytes::allocate(bytesSize_)),
          decodedSize_(partSize / 4 + 1),
          decoded_(FileBytes::allocate(decodedSize_)),
          memory_(decoded_.get(), decodedSize_)
    {
    }

    std::span<char> bytes(std::size_t size)
    {
        if (size > bytesSize_) {
            bytes_ = FileBytes::allocate(size);
            bytesSize_ = size;
        }
        return {bytes_.get(), size};
    }

    /// Empty, for the texts of people.
    std::pmr::memory_resource& memory()
    {
        memory_.release();
        return memory_;
    }

    /// Empty.
    CardReader::Cards& cards()
    {
        cards_.people.clear();
        cards_.ranges.clear();
        cards_.groups.clear();
        return cards_;
    }

private:
    std::size_t bytesSize_;
    FileBytes::Memory bytes_;
    std::size_t decodedSize_;
    FileBytes::Memory decoded_;
    std::pmr::monotonic_buffer_resource memory_;
    CardReader::Cards cards_;
};

class PartwiseReading final {
public:
    PartwiseReading(const PreparedFile& file, const Pieces& written,
                    const std::vector<RemainingCard>& expected, std::size_t partSize)
        : file_(file), written_(written), expected_(expected), partSize_(partSize)
    {
    }

    /// Returns whether the part is as expected.
    bool check(const Part& part)
    {
        auto space = takeSpace();
        const bool isAsExpected = check(part, *space);
        const std::lock_guard lock(mutex_);
        spaces_.push_back(std::move(space));
        return isAsExpected;
    }

private:
    bool check(const Part& part, Space& space) const
    {
        // With the beginning of the next part, so that the scanner does not take the end of this
        // one for the end of the text.
        const auto size = part.end - part.begin;
        const auto next = part.endCard < expected_.size() ? kBegin.size() : 0;
        const auto bytes = space.bytes(size + next);
        if (file_.readAt(bytes, part.begin) != bytes.size()) {
            return false;
        }
        const std::string_view text(bytes.data(), bytes.size());
        return isWritten(text, part) &&
               (part.begin > 0 || detectEncoding(text) == FileEncoding::Bytes) &&
               holdsCards(text, part, space);
    }

    bool isWritten(std::string_view text, const Part& part) const
    {
        auto inPiece = part.inPiece;
        for (auto piece = part.piece; !text.empty(); ++piece) {
            const auto expected = written_[piece].substr(inPiece, text.size());
            if (!text.starts_with(expected)) {
                return false;
            }
            text.remove_prefix(expected.size());
            inPiece = 0;
        }
        return true;
    }

    bool holdsCards(std::string_view text, const Part& part, Space& space) const
    {
        const auto size = part.end - part.begin;
        auto& cards = space.cards();
        CardScanner scanner(text, CardReader::Text::Bytes, CardScanner::Properties::OfPerson,
                            space.memory());
        scanner.select(0, size);
        scanner.readAll(cards);
        if (cards.people.size() != part.endCard - part.firstCard ||
            (size < text.size() && !scanner.isBetweenCards())) {
            return false;
        }
        for (std::size_t i = 0; i < cards.people.size(); ++i) {
            const auto& range = cards.ranges[i];
            // As in `CardBytes`.
            constexpr std::size_t kLongestLineEnd = std::numeric_limits<std::uint16_t>::max();
            const auto end = range.end - std::min(range.lineEndSize, kLongestLineEnd);
            if (!expected_[part.firstCard + i].isReadAs(text.substr(range.begin, end - range.begin),
                                                        cards.people[i])) {
                return false;
            }
        }
        return true;
    }

    std::unique_ptr<Space> takeSpace()
    {
        const std::lock_guard lock(mutex_);
        if (spaces_.empty()) {
            return std::make_unique<Space>(partSize_);
        }
        auto space = std::move(spaces_.back());
        spaces_.pop_back();
        return space;
    }

    const PreparedFile& file_;
    const Pieces& written_;
    const std::vector<RemainingCard>& expected_;
    const std::size_t partSize_;
    std::mutex mutex_;
    // Those that no thread uses. They keep their memory, so that the system need not provide new
    // pages for each part.
    std::vector<std::unique_ptr<Space>> spaces_;
};

}  // namespace

bool isReadBackInParts(const PreparedFile& file, const Pieces& written,
                       const std::vector<RemainingCard>& expected, const ReadBackMethod& method)
{
    const auto parts = partsOf(written, expected, method.partSize);
    if (!parts) {
        return false;
    }
    const auto size = parts->back().end;
    PartwiseReading reading(file, written, expected, std::min(method.partSize, size));
    std::atomic<bool> isAsExpected = true;
    const auto threads = method.threads == 0 ? processors() : method.threads;
    runSideBySide(parts->size(), threads, [&](std::size_t i) {
        if (isAsExpected && !reading.check((*parts)[i])) {
            isAsExpected = false;
        }
    });
    std::array<char, 1> more{};
    return isAsExpected && file.readAt(more, size) == 0;
}

}  // namespace dunmora
