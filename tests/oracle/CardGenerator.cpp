#include "tests/oracle/CardGenerator.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace dunmora::test {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool isAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

bool isAscii(const std::string& text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return isAscii(c); });
}

/// Whether the byte continues a UTF-8 character.
bool continuesCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Whether a line of version 2.1 can be folded here: the rest must not look like a BEGIN line.
bool foldsBefore(const std::string& line, std::size_t at)
{
    const auto word = line.find_first_not_of(' ', at);
    return word != std::string::npos && line.compare(word, 6, "BEGIN:") != 0;
}

/// Converts the text to ISO-8859-1. Returns nothing when it has other characters.
std::optional<std::string> latin1(const std::string& text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            bytes += text[i];
        } else if ((byte == 0xC2 || byte == 0xC3) && i + 1 < text.size()) {
            ++i;
            bytes += static_cast<char>((byte & 3U) << 6U |
                                       (static_cast<unsigned char>(text[i]) & 0x3FU));
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}

std::string base64(const std::string& text)
{
    static constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string result;
    for (std::size_t i = 0; i < text.size(); i += 3) {
        std::uint32_t bits = 0;
        for (std::size_t j = i; j < i + 3; ++j) {
            bits = bits << 8U | (j < text.size() ? static_cast<unsigned char>(text[j]) : 0U);
        }
        for (std::size_t digit = 0; digit < 4; ++digit) {
            result += i + digit <= text.size()
                          ? kDigits[bits >> (18U - 6U * static_cast<std::uint32_t>(digit)) & 63U]
                          : '=';
        }
    }
    return result;
}

}  // namespace

std::string CardGenerator::anyCase(std::string_view word)
{
    std::string result(word);
    if (chance(70)) {
        return result;
    }
    for (auto& c : result) {
        if (chance(50)) {
            c = static_cast<char>(c >= 'A' && c <= 'Z'   ? c - 'A' + 'a'
                                  : c >= 'a' && c <= 'z' ? c - 'a' + 'A'
                                                         : c);
        }
    }
    return result;
}

std::string CardGenerator::lineEnd()
{
    const auto dice = below(10);
    return dice < 6 ? "\r\n" : dice < 9 ? "\n" : "\r";
}

/// Returns a name of zero to four pieces, each of them hard to read for a different reason.
std::string CardGenerator::name()
{
    static constexpr std::array<std::string_view, 32> kPieces = {
        "Ann",     "Lee", "Bob",         "Müller", "安藤", "Ñandú",    "😀",  "O'Neil",
        "van der", "x",   "1",           "é",      "ß",    "Ωmega",    " ",  ",",
        ";",       ":",   "=",           "\"",     "=3D",  "&amp;",    "()", "tel:",
        "a.b",     "END", "BEGIN:VCARD", "-",      "%20",  "\xC2\xA0", "q",  "Zoë"};
    std::string text;
    for (auto count = below(5); count > 0; --count) {
        text += kPieces[below(kPieces.size())];
    }
    // Version 2.1 has no escape for a backslash or a line break.
    if (version_ != Version::V21 && chance(5)) {
        text += chance(50) ? "\\" : "\\n";
    }
    if (version_ != Version::V21 && chance(5)) {
        text += "\nsecond line";
    }
    return text;
}

std::string CardGenerator::phoneNumber()
{
    static constexpr std::string_view kCharacters = "0123456789 -+().,#*";
    std::string number = "+";
    for (auto count = 1 + below(14); count > 0; --count) {
        number += kCharacters[below(kCharacters.size())];
    }
    return number + "7";
}

std::string CardGenerator::escaped(const std::string& text, Extent extent)
{
    std::string result;
    for (const auto c : text) {
        if (c == ';' && (extent == Extent::Component || chance(50))) {
            result += "\\;";
        } else if (c == '\\' && version_ != Version::V21) {
            result += "\\\\";
        } else if (c == '\n' && version_ != Version::V21) {
            result += chance(50) ? "\\n" : "\\N";
        } else if (c == ',' && version_ != Version::V21 && chance(70)) {
            result += "\\,";
        } else {
            result += c;
        }
    }
    return result;
}

std::string CardGenerator::quotedPrintable(const std::string& text)
{
    std::string result;
    std::size_t column = 0;
    for (const auto c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (column > 60 || (column > 0 && chance(4))) {
            card_.quirks.insert(Quirk::SoftBreak);
            result += "=" + lineEnd_;
            column = 0;
        }
        // Encoded, these would be text instead of separators or escapes.
        const auto isSyntax = c == ';' || c == ',' || c == '\\' || result.ends_with('\\');
        if (c == '=' || byte < 0x20 || byte >= 0x80 || (!isSyntax && chance(10))) {
            result += '=';
            result += kHexDigits[byte >> 4U];
            result += kHexDigits[byte & 15U];
            column += 3;
        } else {
            result += c;
            ++column;
        }
    }
    // A blank at the end of a quoted-printable line is padding.
    if (result.ends_with(' ')) {
        result.replace(result.size() - 1, 1, "=20");
    }
    return result;
}

/// Folds at any position with an extra blank (3.0 and 4.0) or before an existing blank (2.1).
std::string CardGenerator::folded(const std::string& line)
{
    // After base64, the beginning of a property name could be read as more base64.
    const auto first = followsBase64_ ? line.find_first_of(";:") + 1 : 1;
    followsBase64_ = line.find("ENCODING=") < line.find(':');
    std::string result;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (i >= first && version_ != Version::V21 && chance(3)) {
            if (continuesCharacter(line[i])) {
                card_.quirks.insert(Quirk::MidCharacterFold);
            }
            result += lineEnd_ + (chance(80) ? " " : "\t");
        } else if (i >= first && version_ == Version::V21 && line[i] == ' ' &&
                   foldsBefore(line, i) && chance(5)) {
            card_.quirks.insert(Quirk::Fold21);
            result += lineEnd_;
        }
        result += line[i];
    }
    return result;
}

void CardGenerator::addLine(const std::string& line)
{
    card_.bytes += folded(line) + lineEnd_;
    if (chance(2)) {
        card_.bytes += lineEnd_;
    }
}

/// Adds a property whose components are these texts, in one of the ways to write text.
void CardGenerator::addText(const std::string& property, const std::vector<std::string>& texts)
{
    const auto extent = texts.size() > 1 ? Extent::Component : Extent::Whole;
    std::string value;
    bool needsEncoding = false;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        needsEncoding = needsEncoding || texts[i].find('\n') != std::string::npos;
        value += (i == 0 ? "" : ";") + escaped(texts[i], extent);
    }
    auto parameters = property;
    if (chance(5)) {
        parameters += ";LANGUAGE=en";
    }
    const auto inLatin1 = latin1(value);
    if (version_ == Version::V21 && inLatin1 && chance(25)) {
        parameters += anyCase(";CHARSET=ISO-8859-1");
        if (!isAscii(value)) {
            card_.quirks.insert(Quirk::Latin1);
        }
        value = *inLatin1;
    } else if (version_ == Version::V21 && chance(50)) {
        parameters += anyCase(";CHARSET=UTF-8");
    }
    const auto dice = below(100);
    if (version_ != Version::V40 && dice < 25) {
        parameters += chance(80) ? ";ENCODING=QUOTED-PRINTABLE" : ";" + anyCase("QUOTED-PRINTABLE");
        // Soft breaks already fold the line.
        card_.bytes += parameters + ":" + quotedPrintable(value) + lineEnd_;
        return;
    }
    if (version_ != Version::V40 && dice < 30 && !value.empty()) {
        parameters += version_ == Version::V21 ? ";ENCODING=BASE64" : ";ENCODING=b";
        card_.quirks.insert(Quirk::Base64Text);
        addLine(parameters + ":" + base64(value));
        return;
    }
    addLine(parameters + ":" + value);
}

void CardGenerator::addNames()
{
    const auto given = name();
    const auto family = name();
    const auto formatted = name();
    const auto hasN = chance(85);
    const auto hasFormatted = chance(85);
    const std::string group = chance(5) ? "g1." : "";
    const auto addN = [&] {
        if (hasN) {
            addText(group + anyCase("N"), {family, given, chance(20) ? name() : "", "", ""});
        }
    };
    const auto addFormatted = [&] {
        if (hasFormatted) {
            addText(group + anyCase("FN"), {formatted});
        }
    };
    if (chance(50)) {
        addN();
        addFormatted();
    } else {
        addFormatted();
        addN();
    }
    setNames(card_.expected, hasN ? given : "", hasN ? family : "", hasFormatted ? formatted : "");
    if (hasN && chance(5)) {
        addText("N", {"Second", "Name"});
    }
    if (chance(30)) {
        card_.expected.nickname = name();
        addText(anyCase("NICKNAME"), {card_.expected.nickname});
    }
}

void CardGenerator::addUid()
{
    if (chance(50)) {
        card_.expected.uid = (chance(30) ? "urn:uuid:" : "uid-") + std::to_string(++uidsGiven_);
        addLine(anyCase("UID") + ":" + card_.expected.uid);
    }
}

void CardGenerator::addModified()
{
    if (!chance(40)) {
        return;
    }
    const auto day = std::chrono::sys_days(std::chrono::days(below(20000)));
    const auto seconds = std::chrono::seconds(below(86400));
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(seconds);
    const auto isBasic = chance(50);
    const auto written = [&](const char* basic, const char* extended, auto a, auto b, auto c) {
        std::array<char, 32> text{};
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
        std::snprintf(text.data(), text.size(), isBasic ? basic : extended, static_cast<int>(a),
                      static_cast<int>(b), static_cast<int>(c));
        return std::string(text.data());
    };
    auto text = written("%04d%02d%02d", "%04d-%02d-%02d", static_cast<int>(date.year()),
                        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    card_.modified = day;
    if (chance(80)) {
        text += "T" + written("%02d%02d%02d", "%02d:%02d:%02d", time.hours().count(),
                              time.minutes().count(), time.seconds().count());
        card_.modified = day + seconds;
        if (chance(10)) {
            text += ".123";
        }
        const auto zone = below(4);
        if (zone == 0) {
            text += isBasic ? "+0230" : "+02:30";
            *card_.modified -= std::chrono::minutes(150);
        } else if (zone == 1) {
            text += isBasic ? "-0500" : "-05:00";
            *card_.modified += std::chrono::hours(5);
        } else if (zone == 2) {
            text += "Z";
        }
    }
    if (chance(5)) {
        text = "yesterday";
        card_.modified = std::nullopt;
    }
    addLine(anyCase("REV") + ":" + text);
}

std::string CardGenerator::typeParameters(const std::vector<std::string>& types)
{
    std::string text;
    const auto form = below(4);
    const auto isQuoted = form == 2 && types.size() > 1;
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (form == 0) {
            text += ";" + types[i];
        } else if (form == 1 || i == 0) {
            text += ";" + anyCase("TYPE") + "=" + (isQuoted ? "\"" : "") + types[i];
        } else {
            text += "," + types[i];
        }
    }
    return text + (isQuoted ? "\"" : "");
}

void CardGenerator::addPhones()
{
    static constexpr std::array<std::string_view, 16> kTypes = {
        "HOME", "WORK", "CELL",   "FAX",   "PAGER", "VOICE",    "PREF",   "MAIN",
        "MSG",  "TEXT", "IPHONE", "OTHER", "VIDEO", "INTERNET", "X-Boat", "CAR"};
    std::vector<std::string> labelLines;
    for (std::uint32_t count = below(5), i = 1; i <= count; ++i) {
        std::vector<std::string> types;
        for (auto typeCount = below(4); typeCount > 0; --typeCount) {
            types.push_back(anyCase(kTypes[below(kTypes.size())]));
        }
        std::string group;
        std::string label;
        if (chance(20)) {
            group = "item" + std::to_string(i) + ".";
            if (chance(80)) {
                label = chance(20)   ? ""
                        : chance(50) ? "_$!<AssistantPhone>!$_"
                                     : "Boat; work, \"Zoë\"";
                labelLines.push_back(anyCase(group));
                labelLines.back() += "X-ABLabel:" + escaped(label, Extent::Whole);
            }
        }
        auto value = phoneNumber();
        auto written = value;
        auto line = anyCase(group) + anyCase("TEL") + typeParameters(types);
        if (version_ == Version::V40 && chance(40)) {
            value += chance(50) ? ";ext=102" : "";
            written = "tel:" + value;
            line += ";VALUE=uri";
        }
        if (version_ == Version::V40 && chance(20)) {
            line += ";PREF=1";
        }
        line += ":" + written;
        addLine(line);
        card_.expected.phones.push_back({expectedLabel(types, label), value});
        if (chance(30)) {
            addOther();
        }
    }
    for (const auto& line : labelLines) {
        addLine(line);
    }
}

/// Adds a property that readers must ignore.
void CardGenerator::addOther()
{
    switch (below(8)) {
    case 0:
        addLine("EMAIL;TYPE=INTERNET:ann@example.com");
        break;
    case 1:
        addLine("ADR;TYPE=HOME:;;1 Main St;Springfield;;12345;");
        break;
    case 2:
        addLine("NOTE:TEL and N:are not here\\, FN: is not either");
        break;
    case 3:
        addLine(version_ == Version::V40 ? "X-DATA:bm90aGluZw==" : "PHOTO;ENCODING=b:bm90aGluZw==");
        break;
    case 4:
        addLine("X-ODD;X-PARAMETER=\"a:b;TEL:c\":value");
        break;
    case 5:
        card_.bytes += "NOTE;ENCODING=QUOTED-PRINTABLE:one=" + lineEnd_ + "TEL:two" + lineEnd_;
        break;
    case 6:
        if (version_ == Version::V21) {
            card_.quirks.insert(Quirk::AgentCard);
            card_.bytes += "AGENT:" + lineEnd_ + "BEGIN:VCARD" + lineEnd_ + "VERSION:2.1" +
                           lineEnd_ + "N:Agent;Secret" + lineEnd_ + "TEL:007" + lineEnd_ +
                           "UID:agent" + lineEnd_ + "END:VCARD" + lineEnd_;
        }
        break;
    default:
        addLine("ORG:Example\\, Inc.;Sales");
    }
}

GeneratedCard CardGenerator::next()
{
    // After an open 3.0 or 4.0 card, a blank before BEGIN would make the line a continuation.
    const auto* const indentation =
        card_.kind != GeneratedCard::Kind::WithoutEnd && chance(5) ? "  " : "";
    card_ = GeneratedCard();
    followsBase64_ = false;
    version_ = std::array{Version::V21, Version::V30, Version::V40}[below(3)];
    lineEnd_ = lineEnd();

    const auto dice = below(100);
    if (dice < 3) {
        card_.kind = GeneratedCard::Kind::Group;
    } else if (dice < 6) {
        card_.kind = GeneratedCard::Kind::WithoutEnd;
    } else if (dice < 7) {
        card_.kind = GeneratedCard::Kind::WithoutProperty;
    }

    card_.bytes = indentation + anyCase("BEGIN:VCARD") + (chance(5) ? " \t" : "") + lineEnd_;
    if (card_.kind != GeneratedCard::Kind::WithoutProperty) {
        card_.bytes += version_ == Version::V21   ? "VERSION:2.1"
                       : version_ == Version::V30 ? "VERSION:3.0"
                                                  : "VERSION:4.0";
        card_.bytes += lineEnd_;
        if (chance(50)) {
            addUid();
            addNames();
            addPhones();
        } else {
            addPhones();
            addNames();
            addUid();
        }
        addModified();
        for (auto count = below(3); count > 0; --count) {
            addOther();
        }
        if (card_.kind == GeneratedCard::Kind::Group) {
            addLine(version_ == Version::V40 ? anyCase("KIND:group")
                                             : anyCase("X-ADDRESSBOOKSERVER-KIND:group"));
        }
    }
    if (card_.kind != GeneratedCard::Kind::WithoutEnd) {
        card_.bytes += anyCase("END:VCARD") + (chance(5) ? " \t" : "") + lineEnd_;
    }
    return card_;
}

std::string CardGenerator::junk()
{
    static constexpr std::array<std::string_view, 5> kJunk = {
        "\n", "\r\n\r\n", "   \n", "Exported by nobody\r\n", "N:Nobody;At All\nTEL:1\n"};
    return chance(85) ? "" : std::string(kJunk[below(kJunk.size())]);
}

}  // namespace dunmora::test
