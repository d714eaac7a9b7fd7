#include "update/UpdateReply.h"

#include "app/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Where the run of digits that begins at `position` ends.
std::size_t endOfDigits(std::string_view text, std::size_t position)
{
    while (position < text.size() && isDigit(text[position])) {
        ++position;
    }
    return position;
}

/// A decimal number without its sign, in its parts.
struct Decimal {
    std::string_view integer;
    std::string_view fraction;
    /// With its sign; empty when there is none.
    std::string_view exponent;
    /// The three together, as they stand.
    std::string_view text;

    bool isNumber() const { return !integer.empty() || !fraction.empty(); }
};

Decimal decimalAt(std::string_view text)
{
    Decimal number;
    auto end = endOfDigits(text, 0);
    number.integer = text.substr(0, end);
    if (end < text.size() && text[end] == '.') {
        const auto endOfFraction = endOfDigits(text, end + 1);
        number.fraction = text.substr(end + 1, endOfFraction - end - 1);
        end = endOfFraction;
    }
    if (number.isNumber() && end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        const auto sign = end + 1;
        const bool hasSign = sign < text.size() && (text[sign] == '+' || text[sign] == '-');
        const auto digits = hasSign ? sign + 1 : sign;
        const auto endOfExponent = endOfDigits(text, digits);
        if (endOfExponent > digits) {
            number.exponent = text.substr(sign, endOfExponent - sign);
            end = endOfExponent;
        }
    }
    number.text = text.substr(0, end);
    return number;
}

/// How many places the first digit that counts stands before the decimal point, or after it when
/// negative. Only its sign matters here, so an exponent that no integer holds is cut off.
std::int64_t magnitudeOf(const Decimal& number)
{
    constexpr std::int64_t kLimit = std::numeric_limits<std::int32_t>::max();
    std::int64_t exponent = 0;
    if (!number.exponent.empty()) {
        const bool isNegative = number.exponent.front() == '-';
        const auto digits = number.exponent.substr(isDigit(number.exponent.front()) ? 0 : 1);
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        exponent = result.ec == std::errc() ? std::min(exponent, kLimit) : kLimit;
        exponent = isNegative ? -exponent : exponent;
    }
    const auto inInteger = number.integer.find_first_not_of('0');
    if (inInteger != std::string_view::npos) {
        return exponent + static_cast<std::int64_t>(number.integer.size() - inInteger);
    }
    return exponent - static_cast<std::int64_t>(number.fraction.find_first_not_of('0'));
}

bool isUtf8(std::string_view text)
{
    for (std::size_t position = 0; position < text.size();) {
        const auto character = utf8CharacterAt(text, position);
        if (!character.isValid) {
            return false;
        }
        position += character.size;
    }
    return true;
}

}  // namespace

double versionNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const auto number = decimalAt(text);
    if (!number.isNumber()) {
        return 0;
    }
    double value = 0;
    const auto result =
        std::from_chars(number.text.data(), number.text.data() + number.text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too large or too small; the conversion does not say which.
        value = magnitudeOf(number) > 0 ? std::numeric_limits<double>::max() : 0;
    }
    return isNegative ? -value : value;
}

UpdateReply judgeUpdateReply(std::string_view body,
                             const std::optional<std::string>& runningVersion)
{
    constexpr std::size_t kLines = 3;
    if (!isUtf8(body) || std::count(body.begin(), body.end(), '\n') != kLines - 1) {
        return UnreadableReply{};
    }
    const auto firstEnd = body.find('\n');
    const auto secondEnd = body.find('\n', firstEnd + 1);
    const auto latest = versionNumber(body.substr(0, firstEnd));
    std::string downloadUrl(body.substr(firstEnd + 1, secondEnd - firstEnd - 1));
    if (latest > versionNumber(runningVersion.value_or(""))) {
        return NewerVersion{std::move(downloadUrl), std::string(body.substr(secondEnd + 1))};
    }
    return UpToDate{std::move(downloadUrl)};
}

}  // namespace dunmora
