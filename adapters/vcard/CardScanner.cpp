#include "adapters/vcard/CardScanner.h"

#include "text/Ascii.h"
#include "text/TextIndex.h"

#include <algorithm>
#include <string>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Whether the parameters can contain ENCODING=B or BASE64. Fast, because every property is asked.
bool mayBeBase64(std::string_view parameters)
{
    return std::any_of(parameters.begin(), parameters.end(),
                       [](char c) { return c == 'b' || c == 'B'; });
}

}  // namespace

bool CardScanner::next()
{
    isComplete_ = false;
    while (position_ < end_) {
        const auto line = nextLine();
        if (!isOpen_) {
            readOutside(line);
        } else if (!readOrdinaryLine(line)) {
            readInside(line);
        }
        if (isComplete_) {
            return true;
        }
    }
    if (end_ == text_.size() && std::exchange(isOpen_, false)) {
        skipped_.push_back(range_.begin);
    }
    return false;
}

void CardScanner::readAll(CardReader::Cards& cards)
{
    while (next()) {
        if (card_.isGroup()) {
            cards.groups.push_back(range_);
        } else {
            cards.people.push_back(card_.person());
            cards.ranges.push_back(range_);
            if (cards.hashesUids) {
                cards.uidHashes.push_back(TextIndex::hashOf(cards.people.back().uid));
            }
        }
    }
}

std::string_view CardScanner::content(const Line& line) const
{
    return text_.substr(line.begin, line.end - line.begin);
}

bool CardScanner::isBegin(const Line& line) const
{
    return delimiterOf(content(line)) == Delimiter::Begin;
}

Line CardScanner::nextLine()
{
    const auto line = lines_.at(position_);
    position_ = line.next;
    return line;
}

/// The line without what can precede BEGIN: byte-order marks, which remain anywhere when files are
/// joined or a card between two others is deleted, and zero bytes, which a crash leaves where a
/// program was writing.
Line CardScanner::withoutPadding(Line line) const
{
    while (line.begin < line.end) {
        if (text_[line.begin] == '\0') {
            ++line.begin;
        } else if (text_.substr(line.begin).starts_with(kByteOrderMark)) {
            line.begin += kByteOrderMark.size();
        } else {
            break;
        }
    }
    return line;
}

void CardScanner::readOutside(const Line& line)
{
    const auto bare = withoutPadding(line);
    if (isBegin(bare)) {
        beginCard(bare.begin);
    }
}

void CardScanner::beginCard(std::size_t begin)
{
    isOpen_ = true;
    range_.begin = begin;
    isBrokenOff_ = false;
    nestedCards_ = 0;
    expectsAgentCard_ = false;
    hasProperty_ = false;
    card_.clear();
}

/// Reads a line that is a whole property of the open card and has nothing unusual, as nearly all
/// lines. Returns false and does nothing when it is another line, which `readInside` is to read.
bool CardScanner::readOrdinaryLine(const Line& line)
{
    const auto text = content(line);
    const auto head = ordinaryHeadOf(text);
    // At "=", the value may continue on the next line.
    if (!head || nextIsIndented() || text.back() == '=' ||
        ordinaryLines_ == OrdinaryLines::LikeOthers) {
        return false;
    }
    if (wantedNames_ && canBeOmitted(text, *head)) {
        expectsAgentCard_ = false;
        hasProperty_ = true;
        return true;
    }
    auto colon = head->nameEnd;
    ValueEncoding encoding;
    if (text[colon] == ';') {
        colon = text.find(':', colon);
        if (colon == std::string_view::npos) {
            return false;
        }
        const auto parameters = text.substr(head->nameEnd, colon - head->nameEnd);
        const auto meaning = card_.parameters().meaning(parameters);
        if (meaning.hasQuotes || meaning.encoding.transfer == TransferEncoding::Base64) {
            return false;
        }
        encoding = meaning.encoding;
    }
    expectsAgentCard_ = false;
    // Also in a nested card: the AGENT before it is a property.
    hasProperty_ = true;
    if (head->kind != PropertyKind::Ignored || properties_ == Properties::All) {
        const bool isPlain = line.isPlain && encoding.transfer == TransferEncoding::Plain &&
                             encoding.charset.empty();
        addProperty({line.begin,
                     line.end,
                     false,
                     {head->kind,
                      {},
                      text.substr(0, head->nameEnd),
                      text.substr(head->nameEnd, colon - head->nameEnd),
                      encoding,
                      text.substr(colon + 1),
                      isPlain}});
    }
    return true;
}

/// Whether nobody wants the property and no other one depends on it, and the line is certain to be
/// the whole of it: base64 may continue on the next line, and a ":" in quotation marks does not end
/// the head. Without a group, a label is that of no property.
bool CardScanner::canBeOmitted(std::string_view line, const OrdinaryHead& head) const
{
    if (head.kind == PropertyKind::Version || head.kind == PropertyKind::Agent) {
        return false;
    }
    const auto name = line.substr(0, head.nameEnd);
    const auto colon = line.find(':', head.nameEnd);
    if (colon == std::string_view::npos ||
        std::any_of(wantedNames_->begin(), wantedNames_->end(),
                    [&](std::string_view wanted) { return equalsIgnoringCase(name, wanted); })) {
        return false;
    }
    const auto parameters = line.substr(head.nameEnd, colon - head.nameEnd);
    return !mayBeBase64(parameters) && parameters.find('"') == std::string_view::npos;
}

void CardScanner::readInside(const Line& line)
{
    const auto text = content(line);
    const bool breaksOff = std::exchange(nextBreaksOff_, false);
    if (text.empty() || (isContinuation(line) && !breaksOff)) {
        return;
    }
    isBrokenOff_ = isBrokenOff_ || breaksOff;
    switch (delimiterOf(text)) {
    case Delimiter::Begin:
        readInnerBegin(line);
        break;
    case Delimiter::End:
        if (nestedCards_ > 0) {
            endNestedCard(line);
        } else {
            endCard(line);
        }
        expectsAgentCard_ = false;
        break;
    case Delimiter::None:
        if (const auto bare = withoutPadding(line); bare.begin != line.begin && isBegin(bare)) {
            // Another file begins here, so the card is not that of an AGENT.
            beginCardInstead(bare.begin);
        } else {
            readProperty(line);
        }
        break;
    }
}

/// Whether the line continues the one before. Some programs indent whole lines of vCard 2.1, so an
/// indented BEGIN or END is still a delimiter there.
bool CardScanner::isContinuation(const Line& line) const
{
    return line.begin < line.end && isBlank(text_[line.begin]) &&
           (card_.version() != VCardVersion::V21 || delimiterOf(content(line)) == Delimiter::None);
}

void CardScanner::readInnerBegin(const Line& line)
{
    if (expectsAgentCard_) {
        ++nestedCards_;
        expectsAgentCard_ = false;
    } else {
        beginCardInstead(line.begin);
    }
}

/// Begins a card where the open one has no END.
void CardScanner::beginCardInstead(std::size_t begin)
{
    skipped_.push_back(range_.begin);
    beginCard(begin);
}

void CardScanner::readProperty(const Line& line)
{
    expectsAgentCard_ = false;
    auto last = line;
    std::string unfolded;
    auto text = content(line);
    auto head = headOf(text);
    if (!head.isComplete) {
        // The name or the parameters are folded, or this is not a property.
        last = skipContinuations(line, TransferEncoding::Plain);
        unfolded = card_.unfolded(line.begin, last.end, TransferEncoding::Plain);
        text = unfolded;
        head = headOf(text);
        if (!head.isComplete) {
            return;
        }
    }

    const auto name = splitName(text.substr(0, head.nameEnd)).name;
    hasProperty_ = hasProperty_ || (nestedCards_ == 0 && isPropertyName(name));
    // An ignored property matters only when it continues on lines that could pass for properties.
    const auto parameters = text.substr(head.nameEnd, head.colon - head.nameEnd);
    const bool mayContinue =
        (last.end > last.begin && text_[last.end - 1] == '=') || mayBeBase64(parameters);
    if (properties_ == Properties::OfPerson && propertyKind(name) == PropertyKind::Ignored &&
        !mayContinue && !nextIsIndented()) {
        return;
    }
    RawProperty raw{line.begin, line.end, false, splitProperty(text, head)};
    last = skipContinuations(last, raw.property.encoding.transfer);
    raw.end = last.end;
    raw.isFolded = last.begin != line.begin;
    addProperty(raw);
}

void CardScanner::addProperty(const RawProperty& property)
{
    const auto kind = property.property.kind;
    if (nestedCards_ == 0 && kind == PropertyKind::Version) {
        card_.readVersion(property);
    }
    if (nestedCards_ == 0 && (properties_ == Properties::All ||
                              (kind != PropertyKind::Ignored && kind != PropertyKind::Version &&
                               kind != PropertyKind::Agent))) {
        card_.add(property);
    }
    if (kind == PropertyKind::Agent) {
        readAgent(property);
    }
}

bool CardScanner::nextIsIndented() const
{
    return position_ < text_.size() && isBlank(text_[position_]);
}

/// Skips the lines that continue this one and returns the last of them.
Line CardScanner::skipContinuations(Line line, TransferEncoding transfer)
{
    if (transfer == TransferEncoding::Plain && !nextIsIndented()) {
        return line;
    }
    while (position_ < text_.size()) {
        const bool softBreak = transfer == TransferEncoding::QuotedPrintable &&
                               line.end > line.begin && text_[line.end - 1] == '=';
        const auto next = lines_.at(position_);
        if (softBreak && breaksOffAt(next)) {
            nextBreaksOff_ = true;
            break;
        }
        if (!softBreak && !isContinuation(next) && !isUnfoldedBase64(next, transfer)) {
            break;
        }
        line = next;
        position_ = next.next;
    }
    return line;
}

/// Whether the text before a soft break breaks off, because this line after it is BEGIN or END. As
/// part of the text, BEGIN would hide the person whose card it begins, indented or not. An indented
/// END hides nobody; it is text unless the version says otherwise.
bool CardScanner::breaksOffAt(const Line& line) const
{
    return isBegin(withoutPadding(line)) ||
           (!isContinuation(line) && delimiterOf(content(line)) == Delimiter::End);
}

/// Some programs write base64 in vCard 2.1 on several lines without folding them.
bool CardScanner::isUnfoldedBase64(const Line& line, TransferEncoding transfer) const
{
    const auto text = content(line);
    return transfer == TransferEncoding::Base64 && !text.empty() &&
           text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                  "0123456789+/= \t") == std::string_view::npos;
}

void CardScanner::readAgent(const RawProperty& property)
{
    const auto value = trimmed(card_.parse(property).value);
    if (value.empty()) {
        expectsAgentCard_ = true;
    } else if (delimiterOf(value) == Delimiter::Begin) {
        ++nestedCards_;
    }
}

void CardScanner::endNestedCard(const Line& line)
{
    --nestedCards_;
    if (nestedCards_ == 0 && properties_ == Properties::All) {
        card_.endAgent(line.end);
    }
}

void CardScanner::endCard(const Line& line)
{
    isOpen_ = false;
    if (isBrokenOff_ || !hasProperty_) {
        skipped_.push_back(range_.begin);
        return;
    }
    range_.end = line.next;
    range_.lineEndSize = line.next - line.end;
    isComplete_ = true;
}

}  // namespace dunmora
