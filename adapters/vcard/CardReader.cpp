#include "adapters/vcard/CardReader.h"

#include "adapters/vcard/PhoneTypes.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// A line as it stands in the text, before unfolding: its content is [begin, end), the next line
/// begins at `next`.
struct Line {
    std::size_t begin;
    std::size_t end;
    std::size_t next;
};

/// Walks the lines of a text. LF, CR LF and CR end a line, and so do several CR before one LF, as
/// careless conversions leave them.
class Lines final {
public:
    explicit Lines(std::string_view text) : text_(text) {}

    /// The line that begins at `position`. Positions must not go back.
    Line at(std::size_t position)
    {
        if (!isKnown_ || position >= next_) {
            findLineFeed(position);
        }
        const auto* loneReturn = static_cast<const char*>(
            std::memchr(text_.data() + position, '\r', contentEnd_ - position));
        if (loneReturn != nullptr) {
            const auto end = static_cast<std::size_t>(loneReturn - text_.data());
            return {position, end, end + 1};
        }
        return {position, contentEnd_, next_};
    }

private:
    // What is found is remembered until it is passed: a text with lone CRs would otherwise be
    // searched to its end once a line.
    void findLineFeed(std::size_t position)
    {
        const auto lineFeed = text_.find('\n', position);
        isKnown_ = true;
        if (lineFeed == std::string_view::npos) {
            contentEnd_ = next_ = text_.size();
            return;
        }
        next_ = lineFeed + 1;
        contentEnd_ = lineFeed;
        while (contentEnd_ > position && text_[contentEnd_ - 1] == '\r') {
            --contentEnd_;
        }
    }

    std::string_view text_;
    bool isKnown_ = false;
    // The content of the line that the next line feed ends, and where the line after it begins.
    std::size_t contentEnd_ = 0;
    std::size_t next_ = 0;
};

enum class Kind : std::uint8_t {
    Unread,
    Name,
    FormattedName,
    Nickname,
    Phone,
    Label,
    Uid,
    Revision,
    Version,
    CardKind,
    List,
    Agent,
};

Kind kindOf(std::string_view name)
{
    const auto is = [&](std::string_view known, Kind kind) {
        return equalsIgnoringCase(name, known) ? kind : Kind::Unread;
    };
    switch (name.size()) {
    case 1:
        return is("N", Kind::Name);
    case 2:
        return is("FN", Kind::FormattedName);
    case 3:
        return equalsIgnoringCase(name, "TEL")   ? Kind::Phone
               : equalsIgnoringCase(name, "UID") ? Kind::Uid
                                                 : is("REV", Kind::Revision);
    case 4:
        return is("KIND", Kind::CardKind);
    case 5:
        return is("AGENT", Kind::Agent);
    case 7:
        return is("VERSION", Kind::Version);
    case 8:
        return is("NICKNAME", Kind::Nickname);
    case 9:
        return is("X-ABLABEL", Kind::Label);
    case 16:
        return is("X-EVOLUTION-LIST", Kind::List);
    case 24:
        return is("X-ADDRESSBOOKSERVER-KIND", Kind::CardKind);
    default:
        return Kind::Unread;
    }
}

enum class Version : std::uint8_t { Unknown, V21, V30 };

enum class Delimiter : std::uint8_t { None, Begin, End };

/// Whether the line is BEGIN:VCARD or END:VCARD, with blanks anywhere around the words.
Delimiter delimiterOf(std::string_view content)
{
    content = trimmed(content);
    const char initial = content.empty() ? '\0' : toUpperAscii(content.front());
    if (initial != 'B' && initial != 'E') {
        return Delimiter::None;
    }
    const auto colon = content.find(':');
    if (colon == std::string_view::npos ||
        !equalsIgnoringCase(trimmed(content.substr(colon + 1)), "VCARD")) {
        return Delimiter::None;
    }
    const auto name = trimmed(content.substr(0, colon));
    return equalsIgnoringCase(name, "BEGIN") ? Delimiter::Begin
           : equalsIgnoringCase(name, "END") ? Delimiter::End
                                             : Delimiter::None;
}

/// A property's group, as in `item1.TEL`, and its name.
struct PropertyName {
    std::string_view group;
    std::string_view name;
};

PropertyName splitName(std::string_view name)
{
    name = trimmed(name);
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? PropertyName{{}, name}
                                         : PropertyName{name.substr(0, dot), name.substr(dot + 1)};
}

bool isPropertyName(std::string_view name)
{
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

/// The ":" that begins the value: the first one outside of quotation marks, or the first at all
/// where a quotation mark is never closed.
std::size_t valueColon(std::string_view content, std::size_t from)
{
    bool quoted = false;
    for (auto i = from; i < content.size(); ++i) {
        if (content[i] == '"') {
            quoted = !quoted;
        } else if (content[i] == ':' && !quoted) {
            return i;
        }
    }
    return content.find(':', from);
}

/// Where the parts of an unfolded property stand.
struct PropertyHead {
    /// At the first ";" or ":".
    std::size_t nameEnd;
    std::size_t colon;
    /// Whether there is a colon at all; a line without one is no property.
    bool isComplete;
};

PropertyHead headOf(std::string_view content)
{
    std::size_t end = 0;
    while (end < content.size() && content[end] != ':' && content[end] != ';') {
        ++end;
    }
    if (end < content.size() && content[end] == ':') {
        return {end, end, true};
    }
    const auto colon = valueColon(content, end);
    return {end, std::min(colon, content.size()), colon != std::string_view::npos};
}

struct Parameter {
    /// Empty for a bare vCard 2.1 parameter, such as HOME.
    std::string_view name;
    std::string_view value;
};

/// Where the parameter at the text's start ends: at the first ";" outside of quotation marks.
std::size_t parameterEnd(std::string_view text)
{
    const auto end = std::min(text.find(';'), text.size());
    if (text.substr(0, end).find('"') == std::string_view::npos) {
        return end;
    }
    bool quoted = false;
    std::size_t i = 0;
    while (i < text.size() && (quoted || text[i] != ';')) {
        quoted = quoted != (text[i] == '"');
        ++i;
    }
    return i;
}

/// Takes the first parameter off a list such as `;TYPE="home,voice";PREF=1`.
Parameter takeParameter(std::string_view& parameters)
{
    parameters.remove_prefix(1);
    const auto parameter = parameters.substr(0, parameterEnd(parameters));
    parameters.remove_prefix(parameter.size());
    const auto equals = parameter.find('=');
    return equals == std::string_view::npos ? Parameter{{}, trimmed(parameter)}
                                            : Parameter{trimmed(parameter.substr(0, equals)),
                                                        trimmed(parameter.substr(equals + 1))};
}

std::string_view withoutQuotes(std::string_view value)
{
    return value.size() >= 2 && value.front() == '"' && value.back() == '"'
               ? value.substr(1, value.size() - 2)
               : value;
}

enum class Transfer : std::uint8_t { Plain, QuotedPrintable, Base64 };

/// How a value is encoded.
struct ValueEncoding {
    Transfer transfer = Transfer::Plain;
    std::string_view charset;
};

ValueEncoding valueEncoding(std::string_view parameters)
{
    ValueEncoding encoding;
    while (!parameters.empty()) {
        const auto parameter = takeParameter(parameters);
        const auto value = withoutQuotes(parameter.value);
        if (equalsIgnoringCase(parameter.name, "CHARSET")) {
            encoding.charset = value;
        } else if (parameter.name.empty() || equalsIgnoringCase(parameter.name, "ENCODING")) {
            if (equalsIgnoringCase(value, "QUOTED-PRINTABLE")) {
                encoding.transfer = Transfer::QuotedPrintable;
            } else if (equalsIgnoringCase(value, "BASE64") ||
                       (!parameter.name.empty() && equalsIgnoringCase(value, "B"))) {
                encoding.transfer = Transfer::Base64;
            }
        }
    }
    return encoding;
}

/// A property after unfolding.
struct Property {
    Kind kind;
    std::string_view group;
    /// With the ";" before each; empty when there are none.
    std::string_view parameters;
    ValueEncoding encoding;
    std::string_view value;
};

/// The parts of a complete property.
Property split(std::string_view text, const PropertyHead& head)
{
    const auto [group, name] = splitName(text.substr(0, head.nameEnd));
    const auto parameters = text.substr(head.nameEnd, head.colon - head.nameEnd);
    return {kindOf(name), group, parameters, valueEncoding(parameters),
            text.substr(head.colon + 1)};
}

/// The text with its backslash escapes resolved, appended to `out`. vCard 2.1 knows no "\n"; every
/// version keeps the backslash before a character that needs none.
void appendUnescaped(std::string& out, std::string_view text, Version version)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == '\\' || next == ';' || next == ',' || next == ':') {
            out += next;
            ++i;
        } else if ((next == 'n' || next == 'N') && version != Version::V21) {
            out += '\n';
            ++i;
        } else {
            out += text[i];
        }
    }
}

/// The component of a structured value that begins at the text's start; the text then begins with
/// the next one.
std::string_view takeComponent(std::string_view& text)
{
    auto end = text.find_first_of(";\\");
    while (end < text.size() && text[end] == '\\') {
        end = text.find_first_of(";\\", end + 2);
    }
    const auto component = text.substr(0, end);
    text.remove_prefix(std::min(component.size() + 1, text.size()));
    return component;
}

/// A property of the open card.
struct RawProperty {
    /// Where its lines stand.
    std::size_t begin;
    std::size_t end;
    bool isFolded;
    /// What it says; only when it is not folded, because how to unfold it is known at the card's
    /// end.
    Property property;
};

/// Reads one text from its beginning to its end.
class Scanner final {
public:
    Scanner(std::string_view text, CardReader::Text kind, std::pmr::memory_resource& memory,
            CardReader::Cards& cards)
        : text_(text), kind_(kind), memory_(memory), cards_(cards), lines_(text)
    {
    }

    void run()
    {
        while (position_ < text_.size()) {
            const auto line = takeLine();
            if (isOpen_) {
                readInside(line);
            } else {
                readOutside(line);
            }
        }
        if (isOpen_) {
            cards_.skipped.push_back(cardBegin_);
        }
    }

private:
    std::string_view content(const Line& line) const
    {
        return text_.substr(line.begin, line.end - line.begin);
    }

    Line takeLine()
    {
        const auto line = lines_.at(position_);
        position_ = line.next;
        return line;
    }

    void readOutside(const Line& line)
    {
        // Where files are joined, or a card between two is deleted, marks stand anywhere.
        auto begin = line.begin;
        while (text_.substr(begin).starts_with(kByteOrderMark)) {
            begin += kByteOrderMark.size();
        }
        if (delimiterOf(text_.substr(begin, line.end - begin)) == Delimiter::Begin) {
            open(begin);
        }
    }

    void open(std::size_t begin)
    {
        isOpen_ = true;
        cardBegin_ = begin;
        nested_ = 0;
        agentIsOpen_ = false;
        version_ = Version::Unknown;
        hasProperty_ = false;
        properties_.clear();
    }

    void readInside(const Line& line)
    {
        const auto text = content(line);
        if (text.empty() || isContinuation(line)) {
            return;
        }
        switch (delimiterOf(text)) {
        case Delimiter::Begin:
            readBegin(line);
            break;
        case Delimiter::End:
            if (nested_ > 0) {
                --nested_;
            } else {
                close(line);
            }
            agentIsOpen_ = false;
            break;
        case Delimiter::None:
            readProperty(line);
            break;
        }
    }

    /// A line that begins with a blank goes on with the one before. vCard 2.1 programs indent
    /// whole lines, so there the END of a card is one all the same.
    bool isContinuation(const Line& line) const
    {
        return line.begin < line.end && isBlank(text_[line.begin]) &&
               (version_ != Version::V21 || delimiterOf(content(line)) == Delimiter::None);
    }

    void readBegin(const Line& line)
    {
        if (agentIsOpen_) {
            ++nested_;
            agentIsOpen_ = false;
        } else {
            cards_.skipped.push_back(cardBegin_);
            open(line.begin);
        }
    }

    void readProperty(const Line& line)
    {
        agentIsOpen_ = false;
        auto last = line;
        std::string unfolded;
        auto text = content(line);
        auto head = headOf(text);
        if (!head.isComplete) {
            // Its name or its parameters are folded, or this is no property.
            last = takeContinuations(line, Transfer::Plain);
            unfolded = unfold(line.begin, last.end, Transfer::Plain);
            text = unfolded;
            head = headOf(text);
            if (!head.isComplete) {
                return;
            }
        }

        const auto name = splitName(text.substr(0, head.nameEnd)).name;
        hasProperty_ = hasProperty_ || (nested_ == 0 && isPropertyName(name));
        // A property that nobody reads matters only as far as its lines could be taken for others.
        const bool mayGoOn = last.end > last.begin && text_[last.end - 1] == '=';
        if (kindOf(name) == Kind::Unread && !mayGoOn && !nextIsIndented()) {
            return;
        }
        RawProperty raw{line.begin, line.end, false, split(text, head)};
        last = takeContinuations(last, raw.property.encoding.transfer);
        raw.end = last.end;
        raw.isFolded = last.begin != line.begin;
        if (raw.property.kind == Kind::Agent) {
            readAgent(raw);
        } else if (nested_ == 0 && raw.property.kind == Kind::Version) {
            readVersion(raw);
        } else if (nested_ == 0 && raw.property.kind != Kind::Unread) {
            properties_.push_back(raw);
        }
    }

    bool nextIsIndented() const { return position_ < text_.size() && isBlank(text_[position_]); }

    /// Takes the lines that go on with this one. Returns the last of them.
    Line takeContinuations(Line line, Transfer transfer)
    {
        if (transfer == Transfer::Plain && !nextIsIndented()) {
            return line;
        }
        while (position_ < text_.size()) {
            const bool softBreak = transfer == Transfer::QuotedPrintable && line.end > line.begin &&
                                   text_[line.end - 1] == '=';
            const auto next = lines_.at(position_);
            if (!softBreak && !isContinuation(next) && !isBareBase64(next, transfer)) {
                break;
            }
            line = next;
            position_ = next.next;
        }
        return line;
    }

    /// vCard 2.1 programs write base64 over several lines without folding them.
    bool isBareBase64(const Line& line, Transfer transfer) const
    {
        const auto text = content(line);
        return transfer == Transfer::Base64 && !text.empty() &&
               text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                      "0123456789+/= \t") == std::string_view::npos;
    }

    void readAgent(const RawProperty& property)
    {
        const auto value = trimmed(parse(property).value);
        if (value.empty()) {
            agentIsOpen_ = true;
        } else if (delimiterOf(value) == Delimiter::Begin) {
            ++nested_;
        }
    }

    void readVersion(const RawProperty& property)
    {
        if (version_ == Version::Unknown) {
            version_ = trimmed(parse(property).value) == "2.1" ? Version::V21 : Version::V30;
        }
    }

    /// The property's lines as one. vCard 2.1 keeps the blank that a line was folded at.
    std::string unfold(std::size_t begin, std::size_t end, Transfer transfer) const
    {
        std::string whole;
        Lines lines(text_.substr(0, end));
        bool softBreak = false;
        for (auto position = begin; position < end;) {
            const auto line = lines.at(position);
            auto part = content(line);
            if (position != begin && !softBreak && !part.empty() && isBlank(part.front()) &&
                version_ != Version::V21) {
                part.remove_prefix(1);
            }
            softBreak =
                transfer == Transfer::QuotedPrintable && part.ends_with('=') && line.end < end;
            whole += softBreak ? part.substr(0, part.size() - 1) : part;
            position = line.next;
        }
        return whole;
    }

    Property parse(const RawProperty& raw)
    {
        if (!raw.isFolded) {
            return raw.property;
        }
        const auto whole = unfold(raw.begin, raw.end, Transfer::Plain);
        const auto transfer = split(whole, headOf(whole)).encoding.transfer;
        const auto text = keep(
            transfer == Transfer::QuotedPrintable ? unfold(raw.begin, raw.end, transfer) : whole);
        return split(text, headOf(text));
    }

    /// The text in a place that lasts as long as the people do.
    std::string_view keep(std::string_view text)
    {
        if (text.empty()) {
            return "";
        }
        auto* place = static_cast<char*>(memory_.allocate(text.size(), 1));
        std::memcpy(place, text.data(), text.size());
        return {place, text.size()};
    }

    /// The value as UTF-8, escapes still in place.
    std::string_view textOf(const Property& property)
    {
        const auto& encoding = property.encoding;
        std::string decoded;
        auto bytes = property.value;
        if (encoding.transfer == Transfer::QuotedPrintable) {
            decoded = decodeQuotedPrintable(bytes);
            bytes = decoded;
        } else if (encoding.transfer == Transfer::Base64) {
            if (auto plain = decodeBase64(bytes)) {
                decoded = *std::move(plain);
                bytes = decoded;
            }
        } else if (kind_ == CardReader::Text::Utf8) {
            return bytes;
        }
        if (encoding.charset.empty() && isUtf8(bytes)) {
            return bytes.data() == property.value.data() ? bytes : keep(bytes);
        }
        return keep(toUtf8(bytes, encoding.charset));
    }

    std::string_view unescaped(std::string_view text)
    {
        if (text.find('\\') == std::string_view::npos) {
            return text;
        }
        scratch_.clear();
        appendUnescaped(scratch_, text, version_);
        return keep(scratch_);
    }

    /// The card's first property of a kind.
    const RawProperty* first(Kind kind) const
    {
        const auto found =
            std::find_if(properties_.begin(), properties_.end(), [&](const RawProperty& property) {
                return property.property.kind == kind;
            });
        return found == properties_.end() ? nullptr : &*found;
    }

    std::optional<std::string_view> firstText(Kind kind)
    {
        const auto* property = first(kind);
        return property == nullptr ? std::nullopt
                                   : std::optional(unescaped(textOf(parse(*property))));
    }

    bool isGroup()
    {
        const auto says = [&](const RawProperty& property, Kind kind, std::string_view value) {
            return property.property.kind == kind &&
                   equalsIgnoringCase(trimmed(parse(property).value), value);
        };
        return std::any_of(properties_.begin(), properties_.end(),
                           [&](const RawProperty& property) {
                               return says(property, Kind::CardKind, "group") ||
                                      says(property, Kind::List, "TRUE");
                           });
    }

    void close(const Line& line)
    {
        isOpen_ = false;
        if (!hasProperty_) {
            cards_.skipped.push_back(cardBegin_);
            return;
        }
        if (isGroup()) {
            ++cards_.groups;
            return;
        }
        Person person;
        readNames(person);
        person.nickname = firstText(Kind::Nickname);
        if (const auto* uid = first(Kind::Uid)) {
            person.uid = textOf(parse(*uid));
        }
        if (const auto* revision = first(Kind::Revision)) {
            person.modified = readRevision(textOf(parse(*revision)));
        }
        person.phones = readPhones();
        cards_.people.push_back(person);
        cards_.ranges.push_back({cardBegin_, line.next, line.next - line.end});
    }

    void readNames(Person& person)
    {
        if (const auto* name = first(Kind::Name)) {
            auto text = textOf(parse(*name));
            const auto last = takeComponent(text);
            const auto given = takeComponent(text);
            if (!trimmed(last).empty() || !trimmed(given).empty()) {
                person.lastName = unescaped(last);
                person.firstName = unescaped(given);
                return;
            }
        }
        // People and firms with only a formatted name would otherwise all be "the same".
        person.firstName = firstText(Kind::FormattedName);
    }

    std::optional<PhoneList> readPhones()
    {
        const auto isPhone = [](const RawProperty& property) {
            return property.property.kind == Kind::Phone;
        };
        const auto count = static_cast<std::size_t>(
            std::count_if(properties_.begin(), properties_.end(), isPhone));
        if (count == 0) {
            return std::nullopt;
        }
        readLabels();
        auto* phones = static_cast<LabelledPhone*>(
            memory_.allocate(count * sizeof(LabelledPhone), alignof(LabelledPhone)));
        auto* end = phones;
        for (const auto& property : properties_) {
            if (isPhone(property)) {
                new (end++) LabelledPhone(readPhone(parse(property)));
            }
        }
        return PhoneList(phones, count);
    }

    /// A label may stand hundreds of lines away from the number of its group.
    void readLabels()
    {
        labels_.clear();
        for (const auto& raw : properties_) {
            if (raw.property.kind != Kind::Label) {
                continue;
            }
            const auto property = parse(raw);
            const auto label = unescaped(textOf(property));
            if (!property.group.empty() && !label.empty()) {
                labels_.try_emplace(upper(property.group), label);
            }
        }
    }

    static std::string upper(std::string_view text)
    {
        std::string result(text);
        std::transform(result.begin(), result.end(), result.begin(), toUpperAscii);
        return result;
    }

    LabelledPhone readPhone(const Property& property)
    {
        auto value = unescaped(textOf(property));
        if (equalsIgnoringCase(value.substr(0, 4), "tel:")) {
            value.remove_prefix(4);
        }
        if (!property.group.empty() && !labels_.empty()) {
            if (const auto found = labels_.find(upper(property.group)); found != labels_.end()) {
                return {found->second, value};
            }
        }
        PhoneTypes types;
        for (auto parameters = property.parameters; !parameters.empty();) {
            const auto parameter = takeParameter(parameters);
            if (parameter.name.empty() || equalsIgnoringCase(parameter.name, "TYPE")) {
                types.add(parameter.value);
            }
        }
        auto label = types.label();
        if (label && !isUtf8(*label)) {
            label = keep(toUtf8(*label, ""));
        }
        return {label, value};
    }

    std::string_view text_;
    CardReader::Text kind_;
    std::pmr::memory_resource& memory_;
    CardReader::Cards& cards_;
    Lines lines_;
    std::size_t position_ = 0;

    // The open card.
    bool isOpen_ = false;
    std::size_t cardBegin_ = 0;
    // How many cards inside AGENT are open.
    std::size_t nested_ = 0;
    // The last property was AGENT with its card still to come.
    bool agentIsOpen_ = false;
    Version version_ = Version::Unknown;
    bool hasProperty_ = false;
    std::vector<RawProperty> properties_;

    // Kept from card to card for their memory.
    std::unordered_map<std::string, std::string_view> labels_;
    std::string scratch_;
};

/// Takes numbers and signs off the front of a text.
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
    // A leap second is the 60th.
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    return std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
           std::chrono::seconds(*second);
}

/// How far local time is ahead of UTC; none when what stands there is no zone.
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

void CardReader::read(std::string_view text, Text kind, Cards& cards)
{
    // A guess at the number of cards spares copying the lists while they grow; a folder of small
    // files leaves them to grow by themselves.
    constexpr std::size_t kUsualCardSize = 256;
    const auto expected = cards.people.size() + text.size() / kUsualCardSize;
    if (expected > 2 * cards.people.capacity()) {
        cards.people.reserve(expected);
        cards.ranges.reserve(expected);
    }
    Scanner(text, kind, memory_, cards).run();
}

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
    // The zone can move a date out of the years that have four digits.
    const auto moment = *date + *time - *zone;
    const int year =
        int(std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(moment)).year());
    return year >= 0 && year <= 9999 ? std::optional(moment) : std::nullopt;
}

}  // namespace dunmora
