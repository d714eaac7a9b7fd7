#include "adapters/qt/RememberedText.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace dunmora {

namespace {

constexpr int kMost = 100'000;

std::optional<int> numberIn(std::string_view text)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number < -kMost || number > kMost) {
        return std::nullopt;
    }
    return number;
}

/// Removes the text before the first blank, and that blank, and returns the former.
std::string_view takeWord(std::string_view& text)
{
    const auto length = std::min(text.find(' '), text.size());
    const auto word = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return word;
}

}  // namespace

std::string numbersText(std::span<const int> numbers)
{
    std::string text;
    for (const int number : numbers) {
        text += (text.empty() ? "" : " ") + std::to_string(number);
    }
    return text;
}

std::optional<std::vector<int>> numbersIn(std::string_view text, std::size_t count)
{
    std::vector<int> numbers;
    while (!text.empty() && numbers.size() < count) {
        const auto number = numberIn(takeWord(text));
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    if (!text.empty() || numbers.size() != count) {
        return std::nullopt;
    }
    return numbers;
}

std::string widthsText(const ColumnWidths& widths)
{
    std::string text;
    for (const auto& [column, width] : widths) {
        text += (text.empty() ? "" : " ") + column + ":" + std::to_string(width);
    }
    return text;
}

ColumnWidths widthsIn(std::string_view text)
{
    ColumnWidths widths;
    while (!text.empty()) {
        const auto word = takeWord(text);
        const auto colon = word.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const auto width = numberIn(word.substr(colon + 1));
        if (colon > 0 && width && *width > 0) {
            widths.insert_or_assign(std::string(word.substr(0, colon)), *width);
        }
    }
    return widths;
}

}  // namespace dunmora
