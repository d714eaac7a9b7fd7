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
constexpr std::string_view kGeneral = "General";

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

// These are used only in assertions.

[[maybe_unused]] bool isKey(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (toLowerAscii(c) >= 'a' && toLowerAscii(c) <= 'z') ||
               std::string_view("_-.").find(c) != std::string_view::npos;
    });
}

[[maybe_unused]] bool isPlain(std::string_view text)
{
    return text == trimmed(text) && std::all_of(text.begin(), text.end(), [](char c) {
               return c >= ' ' && c <= '~' &&
                      std::string_view(";#\"").find(c) == std::string_view::npos;
           });
}

}  // namespace

IniDocument::IniDocument() : sections_{std::string(kGeneral)} {}

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
    Line line{std::string(text), sections_.size() - 1, std::nullopt};
    if (content.starts_with('[')) {
        const auto end = content.find(']');
        if (end == std::string_view::npos) {
            return false;
        }
        line.section = sections_.size();
        sections_.emplace_back(trimmed(content.substr(1, end - 1)));
    } else if (!content.empty() && !content.starts_with(';') && !content.starts_with('#')) {
        const auto end = content.find('=');
        if (end == std::string_view::npos) {
            return false;
        }
        line.key = trimmed(content.substr(0, end));
    }
    lines_.push_back(std::move(line));
    return true;
}

IniDocument::Values IniDocument::values() const
{
    Values values;
    for (const auto& [key, text] : textsIn(kGeneral)) {
        values.emplace(key, readsAsTrue(text));
    }
    return values;
}

bool IniDocument::set(std::string_view key, bool value)
{
    return setText(kGeneral, key, value ? "true" : "false");
}

IniDocument::Texts IniDocument::textsIn(std::string_view section) const
{
    Texts texts;
    for (const auto& line : lines_) {
        if (line.key && isIn(section, line)) {
            texts.insert_or_assign(*line.key, valueIn(line.text));
        }
    }
    return texts;
}

bool IniDocument::setText(std::string_view section, std::string_view key, std::string_view text)
{
    assert(isKey(section) && isKey(key) && isPlain(text));
    const auto assignment = std::string(key) + "=" + std::string(text) + "\n";
    const auto last = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
        return line.key == key && isIn(section, line);
    });
    if (last != lines_.rend()) {
        if (valueIn(last->text) == text) {
            return false;
        }
        last->text = assignment;
        return true;
    }
    auto end = endOf(section);
    // A key before the first section is in ours, too. But many INI readers require every key to be
    // in a section.
    if (end == 0 && (lines_.empty() || !equalsIgnoringCase(section, kGeneral))) {
        end = addSection(section);
    }
    if (end > 0 && !lines_[end - 1].text.ends_with('\n')) {
        lines_[end - 1].text += '\n';
    }
    const auto index = end == 0 ? 0 : lines_[end - 1].section;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(end),
                  Line{assignment, index, std::string(key)});
    return true;
}

bool IniDocument::isIn(std::string_view section, const Line& line) const
{
    return equalsIgnoringCase(sections_[line.section], section);
}

/// The index of a new key: after the last line of the section that is not blank; 0 without one.
std::size_t IniDocument::endOf(std::string_view section) const
{
    const auto last = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
        return isIn(section, line) && !contentOf(line.text).empty();
    });
    return static_cast<std::size_t>(lines_.rend() - last);
}

/// Returns the index of a new key in the section, which is added at the end.
std::size_t IniDocument::addSection(std::string_view name)
{
    if (lines_.empty()) {
        // A preference that comes later is in a section, too.
        append("[" + std::string(kGeneral) + "]\n");
    }
    if (!equalsIgnoringCase(name, kGeneral)) {
        if (!lines_.back().text.ends_with('\n')) {
            lines_.back().text += '\n';
        }
        if (!contentOf(lines_.back().text).empty()) {
            append("\n");
        }
        append("[" + std::string(name) + "]\n");
    }
    return lines_.size();
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
