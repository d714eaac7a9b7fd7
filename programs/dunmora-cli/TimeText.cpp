#include "programs/dunmora-cli/TimeText.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <ctime>
#include <limits>

namespace dunmora {

namespace {

/// Appends a number with at least this many digits.
void append(std::string& out, long number, std::size_t digits)
{
    std::array<char, std::numeric_limits<long>::digits10 + 2> text{};
    const auto* const end = std::to_chars(text.begin(), text.end(), number).ptr;
    const auto size = static_cast<std::size_t>(end - text.begin());
    out.append(size < digits ? digits - size : 0, '0');
    out.append(text.data(), size);
}

/// Like to_time_t, which converts to nanoseconds and so covers only the years 1677 to 2262.
std::time_t secondsOf(std::chrono::sys_seconds time)
{
    return time.time_since_epoch().count();
}

/// Appends "2024-05-01T10:00" with the letter `between` for the T.
void appendDateAndMinute(std::string& out, const std::tm& time, char between)
{
    append(out, time.tm_year + 1900L, 4);
    out += '-';
    append(out, time.tm_mon + 1L, 2);
    out += '-';
    append(out, time.tm_mday, 2);
    out += between;
    append(out, time.tm_hour, 2);
    out += ':';
    append(out, time.tm_min, 2);
}

}  // namespace

void appendUtcTime(std::string& out, std::chrono::sys_seconds time)
{
    const std::time_t seconds = secondsOf(time);
    std::tm parts{};
    if (gmtime_r(&seconds, &parts) == nullptr) {
        return;
    }
    appendDateAndMinute(out, parts, 'T');
    out += ':';
    append(out, parts.tm_sec, 2);
    out += 'Z';
}

void appendLocalTime(std::string& out, std::chrono::sys_seconds time)
{
    const std::time_t seconds = secondsOf(time);
    std::tm parts{};
    if (localtime_r(&seconds, &parts) != nullptr) {
        appendDateAndMinute(out, parts, ' ');
    }
}

}  // namespace dunmora
