#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace dunmora {

/// Keeps texts that live and die together, back to back in a few blocks of memory: a million short
/// texts cost no allocation and no space of their own.
///
/// Thread: as a standard container. The texts never move, and stay until the arena is destroyed.
class TextArena final {
public:
    TextArena() = default;
    ~TextArena() = default;
    TextArena(const TextArena&) = delete;
    TextArena& operator=(const TextArena&) = delete;

    /// Memory for a text of `size` bytes, not initialized. Never null.
    char* allocate(std::size_t size)
    {
        if (next_ == nullptr || size > left_) {
            const auto block = std::max(size, blockSize_);
            blocks_.push_back(Block(new char[block]));
            next_ = blocks_.back().get();
            left_ = block;
            blockSize_ = std::min(2 * blockSize_, kLargestBlock);
        }
        auto* const text = next_;
        next_ += size;
        left_ -= size;
        return text;
    }

    /// A copy of the text. Its data are never null.
    std::string_view store(std::string_view text)
    {
        auto* const copy = allocate(text.size());
        std::copy(text.begin(), text.end(), copy);
        return {copy, text.size()};
    }

private:
    using Block = std::unique_ptr<char[]>;  // NOLINT(modernize-avoid-c-arrays): sized at run time

    // A few people need little; for many, blocks of a mebibyte are few enough.
    static constexpr std::size_t kFirstBlock = 1024;
    static constexpr std::size_t kLargestBlock = std::size_t{1024} * 1024;

    std::vector<Block> blocks_;
    std::size_t blockSize_ = kFirstBlock;
    // What is left of the last block.
    char* next_ = nullptr;
    std::size_t left_ = 0;
};

}  // namespace dunmora
