#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

struct CardProperty;
struct PersonCard;

/// Whether the property is only bookkeeping of the program that wrote the card, such as UID and
/// REV, or whether none of its texts shows anything. Such a property is never compared.
bool isIgnored(const CardProperty& property);

/// In which properties cards differ, as far as `CardKeys` compares them: from the names of all
/// properties that are not the same in each card, removes those of bookkeeping, and adds those that
/// may provide keys for the others.
void restrictToCompared(std::vector<std::string>& names);

/// By what the properties of a card are found in another card: the hashes of their decoded values.
/// A property is in the other card when that provides one of the keys that the property needs. The
/// keys of a process are of no use in another one.
///
/// The lists that a person is a member of count as properties after the others; bookkeeping and
/// empty values do not count. A label counts where it is the meaning, as of a date or a relative.
/// When in doubt, two values are different.
class CardKeys final {
public:
    using Key = std::uint64_t;

    CardKeys() = default;
    explicit CardKeys(const PersonCard& card) { read(card); }

    /// Replaces the keys by those of another card.
    void read(const PersonCard& card);

    /// Replaces the keys by one property that stands for all that every card of a group has, at
    /// least one, and adds those of the others. Such keys are only to be compared with each other.
    ///
    /// `shared` is what all cards have of the others, perhaps not everything, and `keysOfShared`
    /// are its keys, which cost more than those of the one property that stands for it.
    void readBesidesShared(std::span<const CardProperty> others, const PersonCard& shared,
                           const CardKeys& keysOfShared);

    /// The keys of a card that nobody can read: one property that no card has, without a place.
    void setUnknown();

    /// How many properties of the card are compared.
    std::size_t size() const { return properties_.size(); }
    /// The place of a compared property in the card: an index of its properties, or, after those,
    /// of its lists.
    std::size_t placeOf(std::size_t property) const { return properties_[property].place; }
    std::span<const Key> neededBy(std::size_t property) const;
    /// Those of all properties, one after another.
    std::span<const Key> needed() const { return needed_; }
    /// What the whole card provides; a key may be there twice.
    std::span<const Key> provided() const { return provided_; }

private:
    struct Property {
        std::size_t place;
        std::size_t needsEnd;
    };

    void clear();
    void addProperties(std::span<const CardProperty> properties);
    void addProperty(const CardProperty& property);
    void addName(const CardProperty& property);
    void addFormattedNames(const CardProperty& name);
    void addPhone(const CardProperty& property);
    /// Begins a value in `text_`, of which `provide` and `addBoth` add the key.
    void begin(std::string_view kind);
    void provide();
    void addBoth();

    std::vector<Property> properties_;
    // Those of the first property, those of the second one and so on.
    std::vector<Key> needed_;
    std::vector<Key> provided_;
    // Reused: a card has dozens of keys.
    std::string text_;
};

/// A hash of everything in the card, in its order: equal for equal cards, and practically never for
/// different ones. Of no use in another process.
std::uint64_t hashOf(const PersonCard& card);

}  // namespace dunmora
