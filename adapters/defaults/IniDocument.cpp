#include "adapters/defaults/IniDocument.h"

#include "text/Ascii.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <system_error>

namespace dunmora {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool isControl(char c)
{
    return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7F';
}

/// The line without its line end and surrounding blanks.
std::string_view contentOf(std::string_view line)
{
    while (line.ends_with('\n') || line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return trimmed(line);
}

/// The text after "=", without a comment and without quotes.
std::string_view valueIn(std::string_view line)
{
    auto value = contentOf(line.substr(line.find('=') + 1));
    if (value.starts_with('"')) {
        value.remove_prefix(1);
        return value.substr(0, value.find('"'));
    }
    return trimmed(value.substr(0, value.find(';')));
}

bool isNonzeroNumber(std::string_view text)
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
    // A number out of range is not zero. "inf" and "nan" do not count as numbers.
    return error == std::errc::result_out_of_range || (std::isfinite(number) && number != 0);
}

bool readsAsTrue(std::string_view value)
{
    return equalsIgnoringCase(value, "true") || equalsIgnoringCase(value, "yes") ||
           isNonzeroNumber(value);
}

/// Used only in an assertion.
[[maybe_unused]] bool isKey(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (toLowerAscii(c) >= 'a' && toLowerAscii(c) <= 'z') ||
               std::string_view("_-.").find(c) != std::string_view::npos;
    });
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
    const auto content = contentOf(text);
    if (std::any_of(content.begin(), content.end(), isControl)) {
        return false;
    }
    Line line{std::string(text), std::nullopt};
    if (content.starts_with('[')) {
        const auto end = content.find(']');
        if (end == std::string_view::npos) {
            return false;
        }
        inOurSection_ = equalsIgnoringCase(trimmed(content.substr(1, end - 1)), "general");
    } else if (!content.empty() && !content.starts_with(';') && !content.starts_with('#')) {
        const auto end = content.find('=');
        if (end == std::string_view::npos) {
            return false;
        }
        if (inOurSection_) {
            line.key = trimmed(content.substr(0, end));
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
    assert(isKey(key));
    const std::string word = value ? "true" : "false";
    const auto assignment = std::string(key) + "=" + word + "\n";
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
        // Many INI readers require every key to be in a section.
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
