#pragma once

#include "VlAttribute/Attribute.h"

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace VlAttribute {

/// An ordered list of named attributes. A name stands once, is not empty and has no ".": a dot
/// separates the names of a path through nested groups. No child is null. Equality and hash heed
/// the order.
///
/// A group costs one allocation of 32 bytes and 16 a child (22 to 28 where there are 16 or more,
/// as those are looked up by hash); names are stored once per process and never freed.
class GroupAttribute final : public Attribute {
public:
    /// Null, which is not the same as an empty group.
    GroupAttribute() noexcept = default;
    /// As if each pair had been set in a `GroupBuilder`.
    GroupAttribute(std::initializer_list<std::pair<std::string_view, Attribute>> children);
    /// Null when `other` holds another kind.
    explicit GroupAttribute(Attribute other) noexcept : Attribute(std::move(other)) {
        keepOnly(AttributeType::Group);
    }
    /// The group without children.
    static GroupAttribute Empty();

    [[nodiscard]] std::int64_t getNumberOfChildren() const noexcept;
    /// `dotted` may lead through nested groups ("geometry.point.P"). Null when any part is missing
    /// or `dotted` is empty.
    [[nodiscard]] Attribute getChildByName(std::string_view dotted) const noexcept {
        return borrowChildByName(dotted);
    }
    /// Null when out of range.
    [[nodiscard]] Attribute getChildByIndex(std::int64_t index) const noexcept {
        return borrowChildByIndex(index);
    }
    /// "" when out of range. Followed by a zero byte, and valid until the process ends.
    [[nodiscard]] std::string_view getChildName(std::int64_t index) const noexcept;
    /// The flag with which the child was set: whether locations below inherit it. False when out
    /// of range.
    [[nodiscard]] bool isGroupInherit(std::int64_t index) const noexcept;
    /// The place of a direct child, or -1. `name` is taken whole: a dot in it finds nothing.
    [[nodiscard]] std::int64_t findChild(std::string_view name) const noexcept;

    /// As the two above without touching a reference count: the reference lives as long as this
    /// group's value.
    [[nodiscard]] const Attribute& borrowChildByName(std::string_view dotted) const noexcept;
    [[nodiscard]] const Attribute& borrowChildByIndex(std::int64_t index) const noexcept;

private:
    friend class GroupBuilder;
    explicit GroupAttribute(VlAttributeStruct* stolen) noexcept : Attribute(stolen) {}
};

} // namespace VlAttribute
