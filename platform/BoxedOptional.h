#pragma once

#include <memory>
#include <optional>
#include <utility>

namespace dunmora {

/// An optional value of the size of a pointer, with the interface of std::optional: for a large
/// value that few objects have. It is copied and compared with the object.
template <typename Value>
class BoxedOptional final {
public:
    BoxedOptional() = default;

    // NOLINTNEXTLINE(google-explicit-constructor): as in std::optional
    BoxedOptional(std::nullopt_t /*missing*/) {}

    // NOLINTNEXTLINE(google-explicit-constructor): as in std::optional
    BoxedOptional(Value value) : value_(std::make_unique<Value>(std::move(value))) {}

    // NOLINTNEXTLINE(google-explicit-constructor): as in std::optional
    BoxedOptional(std::optional<Value> value)
        : value_(value ? std::make_unique<Value>(*std::move(value)) : nullptr)
    {
    }

    ~BoxedOptional() = default;
    BoxedOptional(const BoxedOptional& other)
        : value_(other ? std::make_unique<Value>(*other) : nullptr)
    {
    }
    BoxedOptional(BoxedOptional&&) noexcept = default;
    BoxedOptional& operator=(const BoxedOptional& other)
    {
        *this = BoxedOptional(other);
        return *this;
    }
    BoxedOptional& operator=(BoxedOptional&&) noexcept = default;

    // NOLINTNEXTLINE(readability-identifier-naming): as in std::optional
    bool has_value() const { return value_ != nullptr; }
    explicit operator bool() const { return has_value(); }

    /// The value, which must not be missing.
    const Value& operator*() const { return *value_; }
    const Value* operator->() const { return value_.get(); }
    Value* operator->() { return value_.get(); }

    friend bool operator==(const BoxedOptional& a, const BoxedOptional& b)
    {
        return a.has_value() == b.has_value() && (!a.has_value() || *a == *b);
    }

private:
    // Null for none, or after the value was moved away.
    std::unique_ptr<Value> value_;
};

}  // namespace dunmora
