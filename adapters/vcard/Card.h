#pragma once

#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/KeptText.h"
#include "adapters/vcard/Lines.h"
#include "adapters/vcard/ParameterMemory.h"
#include "adapters/vcard/Property.h"
#include "platform/Person.h"
#include "text/TextHash.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// A property of a card and the lines that it takes.
struct RawProperty {
    /// The range of its lines in the text, without the last line end.
    std::size_t begin;
    std::size_t end;
    bool isFolded;
    /// Valid only when the property is not folded: how to unfold it depends on the version, which
    /// may come last in the card.
    Property property;
};

/// A telephone number without the scheme of a URI (RFC 3966).
std::string_view withoutTel(std::string_view number);

/// The properties of one card, and the person that they describe. One object serves all cards of a
/// text in turn.
///
/// The person holds views into `text` and into `memory`.
class Card final {
public:
    Card(std::string_view text, CardReader::Text kind, std::pmr::memory_resource& memory)
        : text_(text), kind_(kind), memory_(memory), parameters_(memory)
    {
    }

    /// Provides memory for this many properties, so that a card of no more has one allocation.
    void reserve(std::size_t properties) { properties_.reserve(properties); }

    /// Forgets the previous card.
    void clear()
    {
        version_ = VCardVersion::Unknown;
        properties_.clear();
        ofKind_.fill({});
    }

    VCardVersion version() const { return version_; }

    /// Sets the version; ignores all but the first VERSION property.
    void readVersion(const RawProperty& property);

    void add(const RawProperty& property)
    {
        auto& ofKind = ofKind_[static_cast<std::size_t>(property.property.kind)];
        if (ofKind.count == 0) {
            ofKind.first = properties_.size();
        }
        ++ofKind.count;
        properties_.push_back(property);
    }

    /// Makes the last property, an AGENT, end where the card ends that is its value.
    void endAgent(std::size_t end) { properties_.back().end = end; }

    const std::vector<RawProperty>& properties() const { return properties_; }

    /// The lines of a property, as the text has them.
    std::string_view lines(const RawProperty& property) const
    {
        return text_.substr(property.begin, property.end - property.begin);
    }

    /// Unfolds the lines from `begin` to `end` by the rules of the version.
    std::string unfolded(std::size_t begin, std::size_t end, TransferEncoding transfer) const;

    /// What the lists of parameters in the text say. Only for views into the text or the memory.
    ParameterMemory& parameters() { return parameters_; }

    /// Unfolds and splits the property. The parts are views into the text or the memory. The result
    /// is valid until the next call.
    const Property& parse(const RawProperty& raw);

    /// Decodes the value to UTF-8 and leaves its escapes unresolved. The result is a view into the
    /// text or the memory, as is that of `unescaped`.
    std::string_view textOf(const Property& property);
    std::string_view unescaped(std::string_view text);

    /// Collects the labels of the groups. They come first, because a label may be hundreds of lines
    /// away from the other properties of its group.
    void readLabels();
    /// The label of a group; empty when it has none. Valid after `readLabels`.
    std::string_view labelOf(std::string_view group) const;

    /// Whether the card is a group or a list instead of a person.
    bool isGroup();

    /// Returns the person; the uid is empty when the card has no UID.
    Person person();

private:
    /// Which of the properties are of one kind.
    struct OfKind {
        /// The index of the first of them, if there are any.
        std::size_t first = 0;
        std::size_t count = 0;
    };

    const OfKind& ofKind(PropertyKind kind) const
    {
        return ofKind_[static_cast<std::size_t>(kind)];
    }
    std::string_view keep(std::string_view text) { return keepText(text, memory_); }
    std::string_view unescapedTextOf(const Property& property);
    const RawProperty* first(PropertyKind kind) const;
    std::optional<std::string_view> firstText(PropertyKind kind);
    void readNames(Person& person);
    std::optional<PhoneList> readPhones();
    LabelledPhone readPhone(const Property& property);

    std::string_view text_;
    CardReader::Text kind_;
    std::pmr::memory_resource& memory_;
    VCardVersion version_ = VCardVersion::Unknown;
    std::vector<RawProperty> properties_;
    std::array<OfKind, kPropertyKinds> ofKind_{};
    ParameterMemory parameters_;
    // The folded property that was parsed last.
    Property unfolded_{};

    // Reused from card to card to save allocations.
    std::unordered_map<std::string, std::string_view, TextHash> labels_;
    std::string scratch_;
};

}  // namespace dunmora
