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
    Attribute(const Attribute& other) noexcept : node(other.node) { detail::retainNode(node); }
    Attribute(Attribute&& other) noexcept : node(std::exchange(other.node, nullptr)) {}
    ~Attribute() { detail::releaseNode(node); }

    Attribute& operator=(const Attribute& other) noexcept {
        Attribute copy(other);
        std::swap(node, copy.node);
        return *this;
    }
    Attribute& operator=(Attribute&& other) noexcept {
        Attribute taken(std::move(other));
        std::swap(node, taken.node);
        return *this;
    }

    [[nodiscard]] bool isValid() const noexcept { return node != nullptr; }
    explicit operator bool() const noexcept { return node != nullptr; }
    [[nodiscard]] AttributeType getType() const noexcept {
        return node ? node->type : AttributeType::None;
    }

    /// The hash of type, tuple size, sample times and content (of a group: of names, groupInherit
    /// flags and children in order). Computed once per value, then a plain read. The reference
    /// lives as long as the value; a null attribute's is all zero. [any-thread]
    const Hash& getHash() const noexcept {
        if (node && node->hashState.load(std::memory_order_acquire) == 2) {
            return node->hash;
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
    [[nodiscard]] VlAttributeStruct* getHandle() const noexcept { return node; }
    /// The caller owns one reference and gives it back with `CreateAndSteal` or
    /// `vlAttributeRelease`.
    [[nodiscard]] VlAttributeStruct* getRetainedHandle() const noexcept {
        detail::retainNode(node);
        return node;
    }
    /// Hands this object's own reference to the caller and becomes null.
    [[nodiscard]] VlAttributeStruct* detach() noexcept { return std::exchange(node, nullptr); }

    /// Deep equality. The same value, a difference of type or shape, or two hashes that are already
    /// there decide at once; otherwise the content does. A number that is not a number equals
    /// itself, whatever its bits, and -0.0 equals 0.0: so every attribute equals its own copy.
    /// Two null attributes are equal. [any-thread]
    friend bool operator==(const Attribute& left, const Attribute& right) noexcept {
        return left.node == right.node || equal(left.node, right.node);
    }

protected:
    explicit Attribute(VlAttributeStruct* stolen) noexcept : node(stolen) {}

    /// Becomes null unless of that kind.
    void keepOnly(AttributeType type) noexcept {
        if (getType() != type) {
            *this = Attribute();
        }
    }

private:
    const Hash& computeHash() const noexcept;
    static bool equal(VlAttributeStruct* left, VlAttributeStruct* right) noexcept;

    VlAttributeStruct* node = nullptr;
};

} // namespace VlAttribute

template <>
struct std::hash<VlAttribute::Attribute> {
    std::size_t operator()(const VlAttribute::Attribute& attribute) const noexcept {
        return static_cast<std::size_t>(attribute.getHash().first);
    }
};
