#pragma once

#include <concepts>
#include <optional>

namespace dunmora {

/// An optional value as small as the value, with the interface of std::optional, which adds eight
/// bytes to each of a person's texts.
///
/// A value that no caller stores stands for the missing one. `Missing` knows it:
/// - `value()` returns it,
/// - `is(value)` tests for it,
/// - `unlike(value)` returns `value`, or one that equals it and is not the missing one.
template <typename Value, typename Missing>
class CompactOptional final {
public:
    constexpr CompactOptional() = default;

    // NOLINTNEXTLINE(google-explicit-constructor): as in std::optional
    constexpr CompactOptional(std::nullopt_t /*missing*/) {}

    template <std::convertible_to<Value> Other>
    // NOLINTNEXTLINE(google-explicit-constructor): as in std::optional
    constexpr CompactOptional(const Other& value) : value_(Missing::unlike(value))
    {
    }

    template <std::convertible_to<Value> Other>
    // NOLINTNEXTLINE(google-explicit-constructor): as in std::optional
    constexpr CompactOptional(const std::optional<Other>& value)
        : value_(value ? Missing::unlike(*value) : Missing::value())
    {
    }

    // NOLINTNEXTLINE(google-explicit-constructor): for functions that take any optional text
    constexpr operator std::optional<Value>() const
    {
        return has_value() ? std::optional<Value>(value_) : std::nullopt;
    }

    // NOLINTNEXTLINE(readability-identifier-naming): as in std::optional
    constexpr bool has_value() const { return !Missing::is(value_); }
    constexpr explicit operator bool() const { return has_value(); }

    /// The value, which must not be missing.
    constexpr const Value& operator*() const { return value_; }
    constexpr const Value* operator->() const { return &value_; }

    // NOLINTNEXTLINE(readability-identifier-naming): as in std::optional
    constexpr Value value_or(Value other) const { return has_value() ? value_ : other; }

    friend constexpr bool operator==(const CompactOptional& a, const CompactOptional& b)
    {
        return a.has_value() == b.has_value() && (!a.has_value() || a.value_ == b.value_);
    }

    // Without these two, std::optional would take a CompactOptional for a value, which a missing
    // one never equals.
    template <std::convertible_to<Value> Other>
    friend constexpr bool operator==(const CompactOptional& a, const std::optional<Other>& b)
    {
        return a == CompactOptional(b);
    }
    template <std::convertible_to<Value> Other>
    friend constexpr bool operator==(const std::optional<Other>& a, const CompactOptional& b)
    {
        return CompactOptional(a) == b;
    }

private:
    Value value_ = Missing::value();
};

}  // namespace dunmora
