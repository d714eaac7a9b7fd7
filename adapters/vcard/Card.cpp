#include "adapters/vcard/Card.h"

#include "adapters/vcard/Revision.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <algorithm>
#include <new>
#include <utility>

namespace dunmora {

namespace {

std::string upper(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), toUpperAscii);
    return result;
}

}  // namespace

std::string_view withoutTel(std::string_view number)
{
    return equalsIgnoringCase(number.substr(0, 4), "tel:") ? number.substr(4) : number;
}

void Card::readVersion(const RawProperty& property)
{
    if (version_ == VCardVersion::Unknown) {
        version_ =
            trimmed(parse(property).value) == "2.1" ? VCardVersion::V21 : VCardVersion::Later;
    }
}

std::string Card::unfolded(std::size_t begin, std::size_t end, TransferEncoding transfer) const
{
    return unfold(text_.substr(begin, end - begin),
                  version_ == VCardVersion::V21 ? FoldBlank::Keep : FoldBlank::Remove,
                  transfer == TransferEncoding::QuotedPrintable ? SoftBreaks::Remove
                                                                : SoftBreaks::Keep);
}

const Property& Card::parse(const RawProperty& raw)
{
    if (!raw.isFolded) {
        return raw.property;
    }
    const auto whole = unfolded(raw.begin, raw.end, TransferEncoding::Plain);
    const auto transfer = splitProperty(whole, headOf(whole)).encoding.transfer;
    const auto text =
        keep(transfer == TransferEncoding::QuotedPrintable ? unfolded(raw.begin, raw.end, transfer)
                                                           : whole);
    unfolded_ = splitProperty(text, headOf(text));
    return unfolded_;
}

std::string_view Card::textOf(const Property& property)
{
    if (property.isPlain) {
        return property.value;
    }
    const auto& encoding = property.encoding;
    std::string decoded;
    auto bytes = property.value;
    if (encoding.transfer == TransferEncoding::QuotedPrintable) {
        decoded = decodeQuotedPrintable(bytes);
        bytes = decoded;
    } else if (encoding.transfer == TransferEncoding::Base64) {
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

std::string_view Card::unescaped(std::string_view text)
{
    if (text.find('\\') == std::string_view::npos) {
        return text;
    }
    scratch_.clear();
    appendUnescaped(scratch_, text, version_);
    return keep(scratch_);
}

std::string_view Card::unescapedTextOf(const Property& property)
{
    return property.isPlain ? property.value : unescaped(textOf(property));
}

/// Returns the first property of a kind, or null.
const RawProperty* Card::first(PropertyKind kind) const
{
    const auto& found = ofKind(kind);
    return found.count == 0 ? nullptr : &properties_[found.first];
}

std::optional<std::string_view> Card::firstText(PropertyKind kind)
{
    const auto* property = first(kind);
    return property == nullptr ? std::nullopt : std::optional(unescapedTextOf(parse(*property)));
}

bool Card::isGroup()
{
    if (ofKind(PropertyKind::CardKind).count + ofKind(PropertyKind::List).count == 0) {
        return false;
    }
    const auto hasValue = [&](const RawProperty& property, PropertyKind kind,
                              std::string_view value) {
        return property.property.kind == kind &&
               equalsIgnoringCase(trimmed(parse(property).value), value);
    };
    return std::any_of(properties_.begin(), properties_.end(), [&](const RawProperty& property) {
        return hasValue(property, PropertyKind::CardKind, "group") ||
               hasValue(property, PropertyKind::List, "TRUE");
    });
}

Person Card::person()
{
    Person person;
    readNames(person);
    person.nickname = firstText(PropertyKind::Nickname);
    if (const auto* uid = first(PropertyKind::Uid)) {
        person.uid = textOf(parse(*uid));
    }
    if (const auto* revision = first(PropertyKind::Revision)) {
        person.modified = readRevision(textOf(parse(*revision)));
    }
    person.phones = readPhones();
    return person;
}

void Card::readNames(Person& person)
{
    if (const auto* name = first(PropertyKind::Name)) {
        const auto& property = parse(*name);
        const auto unescape = [&, isPlain = property.isPlain](std::string_view component) {
            return isPlain ? component : unescaped(component);
        };
        auto text = textOf(property);
        const auto last = takeComponent(text);
        const auto given = takeComponent(text);
        if (!trimmed(last).empty() || !trimmed(given).empty()) {
            person.lastName = unescape(last);
            person.firstName = unescape(given);
            return;
        }
    }
    // People and companies that only have a formatted name would otherwise all be equal.
    person.firstName = firstText(PropertyKind::FormattedName);
}

std::optional<PhoneList> Card::readPhones()
{
    const auto [first, count] = ofKind(PropertyKind::Phone);
    if (count == 0) {
        return std::nullopt;
    }
    readLabels();
    auto* phones = static_cast<LabelledPhone*>(
        memory_.allocate(count * sizeof(LabelledPhone), alignof(LabelledPhone)));
    auto* end = phones;
    for (auto i = first; end != phones + count; ++i) {
        if (properties_[i].property.kind == PropertyKind::Phone) {
            new (end++) LabelledPhone(readPhone(parse(properties_[i])));
        }
    }
    return PhoneList(phones, count);
}

void Card::readLabels()
{
    labels_.clear();
    if (ofKind(PropertyKind::Label).count == 0) {
        return;
    }
    for (const auto& raw : properties_) {
        if (raw.property.kind != PropertyKind::Label) {
            continue;
        }
        const auto& property = parse(raw);
        const auto label = unescapedTextOf(property);
        if (!property.group.empty() && !label.empty()) {
            labels_.try_emplace(upper(property.group), label);
        }
    }
}

std::string_view Card::labelOf(std::string_view group) const
{
    if (group.empty() || labels_.empty()) {
        return {};
    }
    const auto found = labels_.find(upper(group));
    return found == labels_.end() ? std::string_view() : found->second;
}

LabelledPhone Card::readPhone(const Property& property)
{
    const auto value = withoutTel(unescapedTextOf(property));
    if (const auto label = labelOf(property.group); !label.empty()) {
        return {label, value};
    }
    return {property.parameters.empty() ? std::nullopt
                                        : parameters_.phoneLabel(property.parameters),
            value};
}

}  // namespace dunmora
