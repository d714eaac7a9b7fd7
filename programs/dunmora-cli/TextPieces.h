#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace dunmora {

/// Prints a text in pieces while it is created, so that a long one is never in memory as a whole.
/// Thread: one at a time. Errors: those of `Print`.
class TextPieces final {
public:
    using Print = std::function<void(std::string_view piece)>;

    explicit TextPieces(Print print);
    ~TextPieces() = default;
    TextPieces(const TextPieces&) = delete;
    TextPieces& operator=(const TextPieces&) = delete;

    /// The end of the text, to append to: what has not been printed yet.
    std::string& text() { return text_; }

    /// Prints the end of the text once it is long enough to be worth it. To be called where the
    /// text may be cut, such as after a line.
    void printLong();

    /// Prints the rest of the text, even if nothing is left. The text is complete then.
    void printRest();

private:
    Print print_;
    std::string text_;
};

}  // namespace dunmora
