#include "update/UpdateReply.h"

#include "text/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <locale>
#include <sstream>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Returns the end of the digits that begin at `position`.
std::size_t endOfDigits(std::string_view text, std::size_t position)
{
    while (position < text.size() && isDigit(text[position])) {
        ++position;
    }
    return position;
}

/// Returns the unsigned decimal number that the text begins with; empty when there is none.
std::string_view decimalAt(std::string_view text)
{
    auto end = endOfDigits(text, 0);
    auto digits = end;
    if (end < text.size() && text[end] == '.') {
        const auto fraction = end + 1;
        end = endOfDigits(text, fraction);
        digits += end - fraction;
    }
    if (digits == 0) {
        return {};
    }
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        const auto sign = end + 1;
        const bool hasSign = sign < text.size() && (text[sign] == '+' || text[sign] == '-');
        const auto exponent = hasSign ? sign + 1 : sign;
        const auto endOfExponent = endOfDigits(text, exponent);
        if (endOfExponent > exponent) {
            end = endOfExponent;
        }
    }
    return text.substr(0, end);
}

/// Returns the double nearest to a decimal number, at most the largest one.
double valueOf(std::string_view decimal)
{
    // Not every standard library we build with has from_chars for double.
    std::istringstream stream{std::string(decimal)};
    stream.imbue(std::locale::classic());
    double value = 0;
    stream >> value;
    // A number out of range sets failbit and still stores a value: the largest double in one
    // library, infinity in another.
    return std::min(value, std::numeric_limits<double>::max());
}

}  // namespace

double versionNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const auto decimal = decimalAt(text);
    const auto value = decimal.empty() ? 0 : valueOf(decimal);
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
