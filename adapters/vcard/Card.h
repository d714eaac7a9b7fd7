#pragma once

#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/Lines.h"
#include "adapters/vcard/Property.h"
#include "platform/Person.h"
#include "text/TextHash.h"

#include <cstddef>
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

/// The properties of one card, and the person that they describe. One object serves all cards of a
/// text in turn.
///
/// The person holds views into `text` and into `memory`.
class Card final {
public:
    Card(std::string_view text, CardReader::Text kind, std::pmr::memory_resource& memory)
        : text_(text), kind_(kind), memory_(memory)
    {
    }

    /// Forgets the previous card.
    void clear()
    {
        version_ = VCardVersion::Unknown;
        properties_.clear();
    }

    VCardVersion version() const { return version_; }

    /// Sets the version; ignores all but the first VERSION property.
    void readVersion(const RawProperty& property);

    void add(const RawProperty& property) { properties_.push_back(property); }

    /// Unfolds the lines from `begin` to `end` by the rules of the version.
    std::string unfolded(std::size_t begin, std::size_t end, TransferEncoding transfer) const;

    /// Unfolds and splits the property. The parts are views into the text or the memory.
    Property parse(const RawProperty& raw);

    /// Whether the card is a group or a list instead of a person.
    bool isGroup();

    /// Returns the person; the uid is empty when the card has no UID.
    Person person();

private:
    std::string_view keep(std::string_view text);
    std::string_view textOf(const Property& property);
    std::string_view unescaped(std::string_view text);
    const RawProperty* first(PropertyKind kind) const;
    std::optional<std::string_view> firstText(PropertyKind kind);
    void readNames(Person& person);
    std::optional<PhoneList> readPhones();
    void readLabels();
    LabelledPhone readPhone(const Property& property);

    std::string_view text_;
    CardReader::Text kind_;
    std::pmr::memory_resource& memory_;
    VCardVersion version_ = VCardVersion::Unknown;
    std::vector<RawProperty> properties_;

    // Reused from card to card to save allocations.
    std::unordered_map<std::string, std::string_view, TextHash> labels_;
    std::string scratch_;
};

}  // namespace dunmora
