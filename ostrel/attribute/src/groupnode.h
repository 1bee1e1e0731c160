#pragma once

#include "VlAttribute/Attribute.h"
#include "nametable.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace VlAttribute {

/// One child of a group: its name, with the groupInherit flag in the lowest bit, which alignment
/// leaves free, and its value.
class GroupChild {
public:
    GroupChild(const InternedName* childName, bool isGroupInherit, Attribute childValue) noexcept
        : value(std::move(childValue)),
          taggedName(reinterpret_cast<std::uintptr_t>(childName) | (isGroupInherit ? 1U : 0U)) {}

    [[nodiscard]] const InternedName* name() const noexcept {
        return reinterpret_cast<const InternedName*>(taggedName & ~std::uintptr_t{1});
    }
    [[nodiscard]] bool isInherit() const noexcept { return (taggedName & 1) != 0; }
    [[nodiscard]] bool hasSameNameAndFlag(const GroupChild& other) const noexcept {
        return taggedName == other.taggedName;
    }

    Attribute value; ///< never null in a group

private:
    std::uintptr_t taggedName;
};

/// An open-addressing table from names to places, over an array that the caller keeps. Its size is
/// a power of two; a slot holds a place or kEmpty.
namespace NameIndex {
constexpr std::uint32_t kEmpty = 0xffffffff;
/// Below this many names a walk is quicker than hashing.
constexpr std::size_t kThreshold = 16;
/// The number of slots for a number of names: two thirds full at most.
std::size_t slotCount(std::size_t nameCount) noexcept;
} // namespace NameIndex

/// A group's value, in one allocation: this head, the children, and for large groups the index.
struct GroupNode : VlAttributeStruct {
    std::uint32_t childCount = 0;
    std::uint32_t indexSize = 0; ///< 0, or a power of two

    /// A group without children yet: `add` them, `count` at most, then `finish`.
    static GroupNode* make(std::size_t count);
    void add(GroupChild child) noexcept;
    void finish() noexcept;

    [[nodiscard]] std::span<GroupChild> children() noexcept {
        return {reinterpret_cast<GroupChild*>(this + 1), childCount};
    }
    [[nodiscard]] std::span<const GroupChild> children() const noexcept {
        return {reinterpret_cast<const GroupChild*>(this + 1), childCount};
    }
    /// A direct child's place, or -1.
    [[nodiscard]] std::int64_t find(std::string_view name) const noexcept;

    /// Every child's hash must be there.
    [[nodiscard]] Hash contentHash() const noexcept;

private:
    GroupNode() noexcept : VlAttributeStruct(AttributeType::Group) {}

    [[nodiscard]] std::uint32_t* index() noexcept {
        return reinterpret_cast<std::uint32_t*>(children().data() + childCount);
    }
    [[nodiscard]] const std::uint32_t* index() const noexcept {
        return reinterpret_cast<const std::uint32_t*>(children().data() + childCount);
    }
};

inline const GroupNode* asGroupNode(const VlAttributeStruct* node) noexcept {
    return node && node->type == AttributeType::Group ? static_cast<const GroupNode*>(node)
                                                      : nullptr;
}

} // namespace VlAttribute
