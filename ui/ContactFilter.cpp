#include "ui/ContactFilter.h"

#include "base/ContactFields.h"
#include "engine/ContactRecord.h"
#include "platform/TextFolding.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"
#include "text/Utf8.h"
#include "ui/FoldedText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace dunmora {

namespace {

/// Separates texts that are not read as one. Nobody can type it into a line.
constexpr char kSeparator = '\n';

constexpr auto kFirstName = textPlace(kContactFirstName);
constexpr auto kLastName = textPlace(kContactLastName);

/// Appends the ASCII digits of the text. Returns false when it has characters beyond ASCII, of
/// which some may be digits, too.
bool appendAsciiDigits(std::string& digits, std::string_view phone)
{
    auto end = digits.size();
    digits.resize(end + phone.size());
    unsigned char bits = 0;
    for (const char c : phone) {
        bits |= static_cast<unsigned char>(c);
        digits[end] = c;
        end += c >= '0' && c <= '9' ? 1 : 0;
    }
    digits.resize(end);
    return bits < 0x80;
}

void appendDigits(std::string& digits, std::string_view phone, const TextFolding& folding)
{
    const auto begin = digits.size();
    if (!appendAsciiDigits(digits, phone)) {
        digits.resize(begin);
        digits += folding.digits(phone);
    }
}

/// The digits of a text that consists only of digits and the punctuation of telephone numbers;
/// empty for any other text.
std::string digitsOfNumber(std::string_view folded, const TextFolding& folding)
{
    constexpr std::string_view kPunctuation = "+-()./ ";
    std::size_t others = 0;
    for (std::size_t position = 0; position < folded.size();) {
        others += kPunctuation.find(folded[position]) == std::string_view::npos ? 1 : 0;
        position += utf8CharacterAt(folded, position).size;
    }
    std::string digits;
    appendDigits(digits, folded, folding);
    return digits.size() == others ? digits : std::string();
}

}  // namespace

ContactFilter::ContactFilter(std::string_view typed, const TextFolding& folding) : folding_(folding)
{
    appendFolded(buffer_, typed, folding);
    folded_ = trimmed(buffer_);
    digits_ = digitsOfNumber(folded_, folding);
}

bool ContactFilter::matches(const ContactRecord& contact)
{
    return isEmpty() || matchesText(contact) || (!digits_.empty() && matchesDigits(contact));
}

bool ContactFilter::narrows(const ContactFilter& earlier) const
{
    const bool containsDigits =
        digits_.empty() ||
        (!earlier.digits_.empty() && digits_.find(earlier.digits_) != std::string::npos);
    return earlier.isEmpty() ||
           (folded_.find(earlier.folded_) != std::string::npos && containsDigits);
}

bool ContactFilter::matchesText(const ContactRecord& contact)
{
    buffer_.clear();
    appendFolded(buffer_, contact.textAt(kFirstName), folding_);
    // Harmless beside a missing name: the typed text neither begins nor ends with a blank.
    buffer_ += ' ';
    appendFolded(buffer_, contact.textAt(kLastName), folding_);
    for (std::size_t place = 0; place < kTextFields.size(); ++place) {
        if (kTextFields[place]->kind != FieldKind::Uid && place != kFirstName &&
            place != kLastName) {
            buffer_ += kSeparator;
            appendFolded(buffer_, contact.textAt(place), folding_);
        }
    }
    return buffer_.find(folded_) != std::string::npos;
}

bool ContactFilter::matchesDigits(const ContactRecord& contact)
{
    buffer_.clear();
    for (std::size_t place = 0; place < kTextFields.size(); ++place) {
        if (kTextFields[place]->kind == FieldKind::Phone) {
            appendDigits(buffer_, contact.textAt(place), folding_);
            buffer_ += kSeparator;
        }
    }
    return buffer_.find(digits_) != std::string::npos;
}

}  // namespace dunmora
