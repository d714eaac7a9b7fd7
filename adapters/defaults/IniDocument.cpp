#include "adapters/defaults/IniDocument.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace dunmora {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r\n";

bool isControl(char c)
{
    return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7F';
}

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsInAnyCase(std::string_view text, std::string_view lowerCase)
{
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                      [](char a, char b) { return lowered(a) == b; });
}

std::string_view trimmed(std::string_view text)
{
    const auto begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// What stands behind the "=", without a comment and without quotes.
std::string_view valueIn(std::string_view line)
{
    auto value = trimmed(line.substr(line.find('=') + 1));
    if (value.starts_with('"')) {
        value.remove_prefix(1);
        return value.substr(0, value.find('"'));
    }
    return trimmed(value.substr(0, value.find(';')));
}

bool isNumberButZero(std::string_view text)
{
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc::invalid_argument || stop != end) {
        return false;
    }
    // Too large or too small to hold is not zero either. "inf" and "nan" are words, not numbers.
    return error == std::errc::result_out_of_range || (std::isfinite(number) && number != 0);
}

bool readsAsTrue(std::string_view value)
{
    return equalsInAnyCase(value, "true") || equalsInAnyCase(value, "yes") ||
           isNumberButZero(value);
}

bool needsNoEscape(char c)
{
    return (c >= '0' && c <= '9') || (lowered(c) >= 'a' && lowered(c) <= 'z') || c == '_' ||
           c == '-' || c == '.';
}

/// The key with every other byte as %XX, so that it can hold "=", line ends and blanks.
std::string encoded(std::string_view key)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : key) {
        if (needsNoEscape(c)) {
            result += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            result += {'%', kDigits[byte / 16U], kDigits[byte % 16U]};
        }
    }
    return result;
}

std::string decoded(std::string_view key)
{
    std::string result;
    while (!key.empty()) {
        unsigned char byte = 0;
        if (key.starts_with('%') && key.size() >= 3 &&
            std::from_chars(key.data() + 1, key.data() + 3, byte, 16).ptr == key.data() + 3) {
            result += static_cast<char>(byte);
            key.remove_prefix(3);
        } else {
            result += key.front();
            key.remove_prefix(1);
        }
    }
    return result;
}

}  // namespace

std::optional<IniDocument> IniDocument::parsed(std::string_view text)
{
    IniDocument document;
    if (text.starts_with(kByteOrderMark)) {
        document.mark_ = kByteOrderMark;
        text.remove_prefix(kByteOrderMark.size());
    }
    while (!text.empty()) {
        const auto length = std::min(text.find('\n'), text.size() - 1) + 1;
        if (!document.append(text.substr(0, length))) {
            return std::nullopt;
        }
        text.remove_prefix(length);
    }
    return document;
}

bool IniDocument::append(std::string_view text)
{
    const auto content = trimmed(text);
    if (std::any_of(content.begin(), content.end(), isControl)) {
        return false;
    }
    Line line{std::string(text), std::nullopt};
    if (content.starts_with('[')) {
        const auto end = content.find(']');
        if (end == std::string_view::npos) {
            return false;
        }
        inOurSection_ = equalsInAnyCase(trimmed(content.substr(1, end - 1)), "general");
    } else if (!content.empty() && !content.starts_with(';') && !content.starts_with('#')) {
        const auto end = content.find('=');
        if (end == std::string_view::npos) {
            return false;
        }
        if (inOurSection_) {
            line.key = decoded(trimmed(content.substr(0, end)));
        }
    }
    lines_.push_back(std::move(line));
    if (inOurSection_ && !content.empty()) {
        endOfOurs_ = lines_.size();
    }
    return true;
}

IniDocument::Values IniDocument::values() const
{
    Values values;
    for (const auto& line : lines_) {
        if (line.key) {
            values.insert_or_assign(*line.key, readsAsTrue(valueIn(line.text)));
        }
    }
    return values;
}

bool IniDocument::set(std::string_view key, bool value)
{
    const std::string word = value ? "true" : "false";
    const auto assignment = encoded(key) + "=" + word + "\n";
    const auto last = std::find_if(lines_.rbegin(), lines_.rend(),
                                   [&](const Line& line) { return line.key == key; });
    if (last != lines_.rend()) {
        if (valueIn(last->text) == word) {
            return false;
        }
        last->text = assignment;
        return true;
    }
    if (lines_.empty()) {
        // Many readers of such files want every key in a section.
        append("[General]\n");
    }
    if (endOfOurs_ > 0 && !lines_[endOfOurs_ - 1].text.ends_with('\n')) {
        lines_[endOfOurs_ - 1].text += '\n';
    }
    const auto position = lines_.begin() + static_cast<std::ptrdiff_t>(endOfOurs_);
    lines_.insert(position, {assignment, std::string(key)});
    ++endOfOurs_;
    return true;
}

std::string IniDocument::text() const
{
    std::string text(mark_);
    for (const auto& line : lines_) {
        text += line.text;
    }
    return text;
}

}  // namespace dunmora
