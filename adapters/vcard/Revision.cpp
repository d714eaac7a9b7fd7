#include "adapters/vcard/Revision.h"

#include "text/Ascii.h"

#include <cstddef>

namespace dunmora {

namespace {

/// Consumes numbers and signs from the front of a text.
class DateParser final {
public:
    explicit DateParser(std::string_view text) : text_(text) {}

    std::optional<int> number(std::size_t digits)
    {
        if (text_.size() < digits) {
            return std::nullopt;
        }
        int value = 0;
        for (const char c : text_.substr(0, digits)) {
            if (c < '0' || c > '9') {
                return std::nullopt;
            }
            value = value * 10 + (c - '0');
        }
        text_.remove_prefix(digits);
        return value;
    }

    bool sign(char wanted)
    {
        if (text_.empty() || toUpperAscii(text_.front()) != wanted) {
            return false;
        }
        text_.remove_prefix(1);
        return true;
    }

    void skipDigits()
    {
        while (!text_.empty() && text_.front() >= '0' && text_.front() <= '9') {
            text_.remove_prefix(1);
        }
    }

    bool atEnd() const { return text_.empty(); }

private:
    std::string_view text_;
};

std::optional<std::chrono::sys_days> takeDate(DateParser& parser)
{
    const auto year = parser.number(4);
    parser.sign('-');
    const auto month = parser.number(2);
    parser.sign('-');
    const auto day = parser.number(2);
    if (!year || !month || !day) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

std::optional<std::chrono::seconds> takeTime(DateParser& parser)
{
    const auto hour = parser.number(2);
    parser.sign(':');
    const auto minute = parser.number(2);
    parser.sign(':');
    const auto second = parser.number(2);
    if (parser.sign('.') || parser.sign(',')) {
        parser.skipDigits();
    }
    // 60 is a leap second.
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    return std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
           std::chrono::seconds(*second);
}

/// Returns the offset of local time from UTC, or nothing when the text is not a zone.
std::optional<std::chrono::seconds> takeZone(DateParser& parser)
{
    if (parser.atEnd() || parser.sign('Z')) {
        return std::chrono::seconds(0);
    }
    const bool ahead = parser.sign('+');
    if (!ahead && !parser.sign('-')) {
        return std::nullopt;
    }
    const auto hours = parser.number(2);
    parser.sign(':');
    const auto minutes = parser.atEnd() ? 0 : parser.number(2);
    if (!hours || !minutes || *hours > 23 || *minutes > 59) {
        return std::nullopt;
    }
    const auto offset = std::chrono::hours(*hours) + std::chrono::minutes(*minutes);
    return ahead ? offset : -offset;
}

}  // namespace

std::optional<std::chrono::sys_seconds> readRevision(std::string_view text)
{
    DateParser parser(trimmed(text));
    const auto date = takeDate(parser);
    if (!date) {
        return std::nullopt;
    }
    if (parser.atEnd()) {
        return *date;
    }
    const auto time = parser.sign('T') ? takeTime(parser) : std::nullopt;
    const auto zone = time ? takeZone(parser) : std::nullopt;
    if (!zone || !parser.atEnd()) {
        return std::nullopt;
    }
    // A zone can move a date out of the range of four-digit years.
    const auto moment = *date + *time - *zone;
    const int year =
        int(std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(moment)).year());
    return year >= 0 && year <= 9999 ? std::optional(moment) : std::nullopt;
}

}  // namespace dunmora
