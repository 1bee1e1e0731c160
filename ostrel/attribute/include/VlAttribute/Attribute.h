#pragma once

#include "VlAttribute/AttributeType.h"
#include "VlAttribute/Hash.h"
#include "VlAttribute/detail/AttributeNode.h"

#include <cstddef>
#include <functional>
#include <utility>

namespace VlAttribute {

/// A handle on an immutable value, or on none (a null attribute). One pointer wide; copying shares
/// the value. The kinds derive from it: `IntAttribute`, `FloatAttribute`, `DoubleAttribute`,
/// `StringAttribute` and `GroupAttribute`, each constructible from an `Attribute` and null when
/// the value is of another kind.
///
/// Different handles on one value may be read, copied and dropped from any number of threads at
/// once; one handle object is no more thread-safe than an int.
///
/// A `VlAttributeStruct*` is the same reference in the form in which it crosses C tables. A handle
/// that a function returns belongs to the caller, one that is passed in stays the caller's. Null
/// stands for the null attribute both ways.
class Attribute {
public:
    Attribute() noexcept = default;
    Attribute(const Attribute& other) noexcept : shared(other.shared) {
        detail::retainNode(shared);
    }
    Attribute(Attribute&& other) noexcept : shared(std::exchange(other.shared, nullptr)) {}
    ~Attribute() { detail::releaseNode(shared); }

    Attribute& operator=(const Attribute& other) noexcept {
        Attribute copy(other);
        std::swap(shared, copy.shared);
        return *this;
    }
    Attribute& operator=(Attribute&& other) noexcept {
        Attribute taken(std::move(other));
        std::swap(shared, taken.shared);
        return *this;
    }

    [[nodiscard]] bool isValid() const noexcept { return shared != nullptr; }
    explicit operator bool() const noexcept { return shared != nullptr; }
    [[nodiscard]] AttributeType getType() const noexcept {
        return shared ? shared->type : AttributeType::None;
    }

    /// The hash of type, tuple size, sample times and content (of a group: of names, groupInherit
    /// flags and children in order). Computed once per value, then a plain read. The reference
    /// lives as long as the value; a null attribute's is all zero. [any-thread]
    const Hash& getHash() const noexcept {
        if (shared && shared->hashState.load(std::memory_order_acquire) == 2) {
            return shared->hash;
        }
        return computeHash();
    }

    /// Takes over the caller's reference.
    static Attribute CreateAndSteal(VlAttributeStruct* handle) noexcept {
        return Attribute(handle);
    }
    /// Adds a reference; the caller keeps its own.
    static Attribute CreateAndRetain(VlAttributeStruct* handle) noexcept {
        detail::retainNode(handle);
        return Attribute(handle);
    }
    /// Borrowed: valid while this attribute (or another reference) is.
    [[nodiscard]] VlAttributeStruct* getHandle() const noexcept { return shared; }
    /// The caller owns one reference and gives it back with `CreateAndSteal` or
    /// `vlAttributeRelease`.
    [[nodiscard]] VlAttributeStruct* getRetainedHandle() const noexcept {
        detail::retainNode(shared);
        return shared;
    }
    /// Hands this object's own reference to the caller and becomes null.
    [[nodiscard]] VlAttributeStruct* detach() noexcept { return std::exchange(shared, nullptr); }

    /// Deep equality. The same value, a difference of type or shape, or two hashes that are already
    /// there decide at once; otherwise the content does. A number that is not a number equals
    /// itself, whatever its bits, and -0.0 equals 0.0: so every attribute equals its own copy.
    /// Two null attributes are equal. [any-thread]
    friend bool operator==(const Attribute& left, const Attribute& right) noexcept {
        return left.shared == right.shared || equal(left.shared, right.shared);
    }

protected:
    explicit Attribute(VlAttributeStruct* stolen) noexcept : shared(stolen) {}

    /// Becomes null unless of that kind.
    void keepOnly(AttributeType type) noexcept {
        if (getType() != type) {
            *this = Attribute();
        }
    }

private:
    const Hash& computeHash() const noexcept;
    static bool equal(VlAttributeStruct* left, VlAttributeStruct* right) noexcept;

    VlAttributeStruct* shared = nullptr;
};

} // namespace VlAttribute

template <>
struct std::hash<VlAttribute::Attribute> {
    std::size_t operator()(const VlAttribute::Attribute& attribute) const noexcept {
        return static_cast<std::size_t>(attribute.getHash().first);
    }
};
