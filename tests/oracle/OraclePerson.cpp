#include "tests/oracle/OraclePerson.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace dunmora::test {

namespace {

std::string lowered(std::string_view text)
{
    std::string result(text);
    for (auto& c : result) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return result;
}

/// Whether the type describes how a number is used or encoded, which gives no label.
bool hasNoLabel(const std::string& type)
{
    static constexpr std::array<std::string_view, 12> kWords = {
        "pref",     "voice", "msg",    "text", "textphone",        "video",
        "internet", "b",     "base64", "8bit", "quoted-printable", "7bit"};
    return type.empty() || std::find(kWords.begin(), kWords.end(), type) != kWords.end();
}

std::string listed(const std::vector<OraclePhone>& phones, LabelCase labelCase)
{
    std::string text;
    for (const auto& phone : phones) {
        auto label = phone.label ? "<" + *phone.label + ">" : "no label";
        text +=
            (labelCase == LabelCase::Exact ? label : lowered(label)) + " " + phone.value + " | ";
    }
    return text;
}

std::vector<OraclePhone> copied(const OptionalPhones& phones)
{
    std::vector<OraclePhone> copies;
    if (phones) {
        for (const auto& phone : *phones) {
            copies.push_back({phone.label ? std::optional<std::string>(*phone.label) : std::nullopt,
                              std::string(phone.value)});
        }
    }
    return copies;
}

}  // namespace

void setNames(OraclePerson& person, std::string_view given, std::string_view family,
              std::string_view formatted)
{
    const auto isBlank = [](std::string_view text) {
        return text.find_first_not_of(" \t") == std::string_view::npos;
    };
    const auto hasName = !isBlank(given) || !isBlank(family);
    person.firstName = hasName ? given : formatted;
    person.lastName = hasName ? family : "";
}

std::optional<std::string> expectedLabel(const std::vector<std::string>& types,
                                         const std::string& customLabel)
{
    if (!customLabel.empty()) {
        return customLabel;
    }
    std::vector<std::string> words;
    for (const auto& type : types) {
        std::istringstream parts(type);
        std::string part;
        while (std::getline(parts, part, ',')) {
            if (!hasNoLabel(lowered(part))) {
                words.push_back(part);
            }
        }
    }
    const auto has = [&](std::string_view word) {
        return std::any_of(words.begin(), words.end(),
                           [&](const auto& type) { return lowered(type) == word; });
    };
    if (has("fax") && has("home")) {
        return "_$!<HomeFAX>!$_";
    }
    if (has("fax") && has("work")) {
        return "_$!<WorkFAX>!$_";
    }
    if (has("fax")) {
        return "_$!<OtherFAX>!$_";
    }
    if (has("pager")) {
        return "_$!<Pager>!$_";
    }
    if (has("iphone")) {
        return "iPhone";
    }
    if (has("cell") && has("work")) {
        return "work mobile";
    }
    if (has("cell") && has("home")) {
        return "home mobile";
    }
    if (has("cell")) {
        return "_$!<Mobile>!$_";
    }
    if (has("main")) {
        return "_$!<Main>!$_";
    }
    if (has("home") && has("work")) {
        return "home work";
    }
    if (has("home")) {
        return "_$!<Home>!$_";
    }
    if (has("work")) {
        return "_$!<Work>!$_";
    }
    if (has("other")) {
        return "_$!<Other>!$_";
    }
    if (words.empty()) {
        return std::nullopt;
    }
    const auto& first = words.front();
    return lowered(first).starts_with("x-") ? first.substr(2) : first;
}

std::string withoutScheme(std::string_view value)
{
    return std::string(lowered(value).starts_with("tel:") ? value.substr(4) : value);
}

std::vector<Difference> differences(const Person& ours, const OraclePerson& theirs,
                                    std::size_t place, LabelCase labelCase)
{
    std::vector<Difference> found;
    const auto compare = [&](std::string_view field, std::string_view our, std::string_view their) {
        if (our != their) {
            found.push_back({std::to_string(place) + " " + std::string(field), std::string(our),
                             std::string(their)});
        }
    };
    if (!theirs.uid.empty()) {
        compare("uid", ours.uid, theirs.uid);
    }
    compare("firstName", ours.firstName.value_or(""), theirs.firstName);
    compare("lastName", ours.lastName.value_or(""), theirs.lastName);
    compare("nickname", ours.nickname.value_or(""), theirs.nickname);
    compare("phones", listed(copied(ours.phones), labelCase), listed(theirs.phones, labelCase));
    return found;
}

std::vector<Difference> differences(std::span<const Person> ours,
                                    std::span<const OraclePerson> theirs, LabelCase labelCase)
{
    if (ours.size() != theirs.size()) {
        return {{"people", std::to_string(ours.size()), std::to_string(theirs.size())}};
    }
    std::vector<Difference> found;
    for (std::size_t i = 0; i < ours.size(); ++i) {
        for (auto& difference : differences(ours[i], theirs[i], i, labelCase)) {
            found.push_back(std::move(difference));
        }
    }
    return found;
}

std::string described(const Difference& difference)
{
    return difference.where + ": we read “" + difference.ours + "”, the oracle reads “" +
           difference.theirs + "”";
}

}  // namespace dunmora::test
