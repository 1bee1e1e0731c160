#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace VlAttribute {

enum class BuildMode {
    Normal,      ///< the builder is empty afterwards
    KeepBuilder, ///< the builder keeps its content, to be changed and built again
};

/// Collects named attributes and makes a `GroupAttribute` of them. Children keep the order in which
/// their names were first set; a name that is deleted and set again goes to the end.
///
/// Time is linear in what is set and built. A builder belongs to one thread.
class GroupBuilder {
public:
    /// Names nest no deeper than this.
    static constexpr int kMaxDepth = 1000;

    GroupBuilder() noexcept;
    ~GroupBuilder();
    GroupBuilder(GroupBuilder&&) noexcept;
    GroupBuilder& operator=(GroupBuilder&&) noexcept;

    /// Sets a child. In a dotted name every part but the last names a group, which is made where
    /// there is none, is merged into where there is one, and replaces anything else that bears the
    /// name. A null attribute leaves the child out, which removes one that is there and makes no
    /// group on the way. `groupInherit` is the named child's own flag; groups made on the way have
    /// true.
    /// Throws std::runtime_error for an empty name or part ("a..b") and beyond `kMaxDepth`; the
    /// builder is then as before.
    GroupBuilder& set(std::string_view dotted, const Attribute& attribute,
                      bool groupInherit = true);

    /// Sets each child of `group` with its flag, whole: what bore the name is replaced. A null
    /// group changes nothing.
    GroupBuilder& update(const GroupAttribute& group);

    /// As `update`, but where both sides have a group of a name, the one is merged into the other
    /// in the same manner. Throws std::runtime_error when groups on both sides nest deeper than
    /// `kMaxDepth`.
    GroupBuilder& deepUpdate(const GroupAttribute& group);

    /// Removes a child if it is there. A group that loses its last child stays, empty.
    GroupBuilder& del(std::string_view dotted);

    /// Makes room for `count` direct children.
    GroupBuilder& reserve(std::size_t count);

    /// True when anything has been set and not deleted: when the group will have children.
    [[nodiscard]] bool isValid() const noexcept;

    /// Never null: without children the empty group.
    [[nodiscard]] GroupAttribute build(BuildMode mode = BuildMode::Normal);

private:
    class Level;
    Level& top();

    std::unique_ptr<Level> root;
};

} // namespace VlAttribute
